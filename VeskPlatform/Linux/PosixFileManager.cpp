#include "VeskPlatform/Linux/PosixFileManager.hpp"

#include "VeskPlatform/Linux/PosixPrivateFiles.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <filesystem>
#include <system_error>

namespace vesk {

void PosixFileManager::createDirectory(const std::string& path) { makeFolders(path, 0777); }

std::string PosixFileManager::currentDirectoryPath() {
    std::error_code failure;
    const std::filesystem::path path = std::filesystem::current_path(failure);
    if (failure) throw PosixError(failure.value(), ".");
    return path.native();
}

} // namespace vesk
