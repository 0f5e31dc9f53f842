#include "VeskPlatform/Linux/PosixFileManager.hpp"

#include "VeskPlatform/Linux/PosixPrivateFiles.hpp"
#include "VeskPlatform/Linux/RandomUuid.hpp"
#include "VeskPlatform/Linux/WorkFolder.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace vesk {

namespace fs = std::filesystem;

std::string PosixFileManager::currentDirectoryPath() {
    std::error_code failure;
    const fs::path path = fs::current_path(failure);
    if (failure) throw PosixError(failure.value(), ".");
    return path.string();
}

void PosixFileManager::createDirectory(const std::string& path) { makeFolders(path, 0777); }

bool PosixFileManager::fileExists(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0;
}

void PosixFileManager::removeItem(const std::string& path) {
    std::error_code failure;
    const bool wasThere = fs::remove(path, failure);
    if (failure) throw PosixError(failure.value(), path);
    if (!wasThere) throw PosixError(ENOENT, path);
}

std::unique_ptr<WorkDirectory> PosixFileManager::makeWorkDirectory(const std::string& prefix) {
    std::string name = randomUuid();
    std::ranges::transform(name, name.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return std::make_unique<WorkFolder>(temporaryFolder(), prefix, name);
}

bool PosixFileManager::isExecutableFile(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

std::string PosixFileManager::resolvedPath(const std::string& path) {
    std::error_code failure;
    const fs::path resolved = fs::weakly_canonical(path, failure);
    return failure ? path : resolved.string();
}

} // namespace vesk
