#pragma once

#include <memory>
#include <string>

namespace vesk {

/// A folder for the work of one run; removed with everything in it when the object goes, whatever fails then.
class WorkDirectory {
public:
    virtual ~WorkDirectory() = default;
    virtual const std::string& path() const = 0;
};

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
    /// Removes a file, a link itself, or an empty folder. Throws PosixError, ENOENT where nothing is there, ENOTEMPTY
    /// for a folder with something in it: a path that is wrong by mistake costs nobody a folder.
    virtual void removeItem(const std::string& path) = 0;
    /// A new folder in the system's one for temporary files, of that prefix and a random UUID in upper case. What
    /// killed runs left of the same prefix is removed. Throws PosixError.
    virtual std::unique_ptr<WorkDirectory> makeWorkDirectory(const std::string& prefix) = 0;
    /// Whether a file, a link followed, is there that the user may run.
    virtual bool isExecutableFile(const std::string& path) = 0;
    /// The absolute path with all links resolved as far as it exists; what does not exist stays as it is.
    virtual std::string resolvedPath(const std::string& path) = 0;
};

} // namespace vesk
