#pragma once

#include "VeskPlatform/FileManager.hpp"

namespace vesk {

/// The file system through POSIX calls.
class PosixFileManager : public FileManager {
public:
    void createDirectory(const std::string& path) override;
    std::string currentDirectoryPath() override;
};

} // namespace vesk
