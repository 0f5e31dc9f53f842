#include "VeskPlatform/Linux/MainBundle.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <filesystem>

namespace vesk {

namespace fs = std::filesystem;

std::string runningExecutable() {
    std::error_code error;
    std::string path = fs::read_symlink("/proc/self/exe", error).string();
    if (error) throw PosixError(error.value(), "/proc/self/exe");
    // The kernel marks a file that has been replaced since; what stands at its path now is its successor.
    constexpr std::string_view replaced = " (deleted)";
    if (path.ends_with(replaced) && !fs::exists(path, error)) path.resize(path.size() - replaced.size());
    return path;
}

} // namespace vesk
