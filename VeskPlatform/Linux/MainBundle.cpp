#include "VeskPlatform/Linux/MainBundle.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>
#include <filesystem>

namespace vesk {

namespace {

namespace fs = std::filesystem;

bool liesIn(const fs::path& file, const fs::path& folder) {
    return std::mismatch(folder.begin(), folder.end(), file.begin(), file.end()).first == folder.end();
}

} // namespace

std::string runningExecutable() {
    std::error_code error;
    std::string path = fs::read_symlink("/proc/self/exe", error).string();
    if (error) throw PosixError(error.value(), "/proc/self/exe");
    // The kernel marks a file that has been replaced since; what stands at its path now is its successor.
    constexpr std::string_view replaced = " (deleted)";
    if (path.ends_with(replaced) && !fs::exists(path, error)) path.resize(path.size() - replaced.size());
    return path;
}

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
