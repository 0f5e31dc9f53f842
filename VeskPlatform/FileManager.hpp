#pragma once

#include <string>

namespace vesk {

/// Folders and files of the user. Relative paths are relative to the current directory.
class FileManager {
public:
    virtual ~FileManager() = default;
    /// Absolute. Throws PosixError where it is gone.
    virtual std::string currentDirectoryPath() = 0;
    /// Makes the folder and those above it that are not there; one that is there is no failure. Throws PosixError, with
    /// ENOTDIR or EEXIST where something else stands in the way.
    virtual void createDirectory(const std::string& path) = 0;
    /// Whether anything is there, a link followed.
    virtual bool fileExists(const std::string& path) = 0;
    /// Removes a file, a link itself, or a folder with everything in it. Throws PosixError, ENOENT where nothing is
    /// there.
    virtual void removeItem(const std::string& path) = 0;
};

} // namespace vesk
