#include "VeskPlatform/Portable/ExecutableBundle.hpp"

#include <algorithm>
#include <filesystem>

namespace vesk {
namespace {

namespace fs = std::filesystem;

bool liesIn(const fs::path& file, const fs::path& folder) {
    return std::mismatch(folder.begin(), folder.end(), file.begin(), file.end()).first == folder.end();
}

} // namespace

Bundle bundleOfExecutable(const std::string& executablePath) {
    const fs::path executable(executablePath);
    Bundle bundle{
        .path = executable.parent_path().string(), .executablePath = executablePath, .resourcesPath = std::nullopt};
    for (fs::path folder = executable.parent_path(); folder.has_relative_path(); folder = folder.parent_path()) {
        if (folder.extension() != ".app") continue;
        const fs::path contents = folder / "Contents";
        if (liesIn(executable, contents / "MacOS") || liesIn(executable, contents / "Helpers")) {
            bundle.path = folder.string();
            bundle.resourcesPath = (contents / "Resources").string();
        }
        break;
    }
    return bundle;
}

} // namespace vesk
