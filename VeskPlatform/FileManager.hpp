#pragma once

#include <string>

namespace vesk {

/// Folders and files of the user. Relative paths are relative to the working directory; a path that already is what
/// was asked for is no failure.
class FileManager {
public:
    virtual ~FileManager() = default;
    /// Makes the folder and those above it that are not there. Throws PosixError, with ENOTDIR or EEXIST where
    /// something else stands in the way.
    virtual void createDirectory(const std::string& path) = 0;
    /// The absolute path of the working directory. Throws PosixError where it is gone.
    virtual std::string currentDirectoryPath() = 0;
};

} // namespace vesk
