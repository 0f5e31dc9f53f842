#pragma once

#include "VeskPlatform/FileManager.hpp"

namespace vesk {

/// The file system through POSIX calls.
class PosixFileManager : public FileManager {
public:
    std::string currentDirectoryPath() override;
    void createDirectory(const std::string& path) override;
    bool fileExists(const std::string& path) override;
    void removeItem(const std::string& path) override;
    std::unique_ptr<WorkDirectory> makeWorkDirectory(const std::string& prefix) override;
    bool isExecutableFile(const std::string& path) override;
    std::string resolvedPath(const std::string& path) override;
};

} // namespace vesk
