#pragma once

#include "VeskSupport/Instant.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// A folder for the work of one run; removed with everything in it when the object goes, whatever fails then.
class WorkDirectory {
public:
    virtual ~WorkDirectory() = default;
    virtual const std::string& path() const = 0;
};

/// What is there, a link followed.
struct FileAttributes {
    bool isDirectory = false;
    /// In bytes; none for what is no regular file.
    std::optional<std::int64_t> size;
    /// Cut towards 1970; none where the system does not tell.
    std::optional<Instant> modified{};

    bool operator==(const FileAttributes&) const = default;
};

/// One name of a folder; its bytes are as the file system has them, which need not be UTF-8.
struct DirectoryEntry {
    std::string name;
    /// A link to a folder is none.
    bool isDirectory = false;

    bool operator==(const DirectoryEntry&) const = default;
};

/// An open folder. It goes on showing what was opened, even where its name has moved on to another folder.
class DirectoryReader {
public:
    virtual ~DirectoryReader() = default;
    /// The next entry in the system's own order, without "." and ".."; none at the end. Throws PosixError.
    virtual std::optional<DirectoryEntry> next() = 0;
};

enum class ExistingFile { replace, keep };

/// Folders and files of the user. Relative paths are relative to the current directory. A path with a null byte names
/// nothing: it is not there, and verbs that throw refuse it with EINVAL. Where a verb throws PosixError, an adapter may
/// throw the system's own failure instead, an ErrorRecord of which `systemErrorNumber` gives the same code.
class FileManager {
public:
    virtual ~FileManager() = default;
    /// Absolute. Throws PosixError where it is gone.
    virtual std::string currentDirectoryPath() = 0;
    /// Makes the folder and those above it that are not there; one that is there is no failure. Throws PosixError, with
    /// ENOTDIR or EEXIST where something else stands in the way.
    virtual void createDirectory(const std::string& path) = 0;
    /// Whether anything is there, a link followed. Safe from any thread.
    virtual bool fileExists(const std::string& path) = 0;
    /// None where nothing is there, a link followed, or where the user may not look.
    virtual std::optional<FileAttributes> attributes(const std::string& path) = 0;
    /// Whether `item`, or what it is a link to, is `folder` or lies anywhere in it: whether removing the one loses the
    /// other. A `folder` that is a link is the link alone. Not where one of them is not there; throws PosixError where
    /// the path that `item` is a link to is longer than the system takes, since nobody can tell then.
    virtual bool isOrContains(const std::string& folder, const std::string& item) = 0;
    /// Throws PosixError, with ENOENT where nothing is there and ENOTDIR where it is no folder.
    virtual std::unique_ptr<DirectoryReader> openDirectory(const std::string& path) = 0;
    /// The first bytes of a file, `count` of them or as many as it has, without waiting for a pipe's writer. Throws
    /// PosixError, with EISDIR for a folder.
    virtual std::string firstBytes(const std::string& path, std::size_t count) = 0;
    /// Writes a file whole or not at all: a failure leaves what was there. A file keeps its permissions, and where the
    /// path is a link to a file, that file is written. Throws PosixError: EEXIST where there is one that is to be kept,
    /// EISDIR for a folder, EINVAL for a pipe, a socket or a device.
    virtual void writeFile(const std::string& path, std::string_view bytes, ExistingFile existing) = 0;
    /// Copies a file, a link itself, or a folder with everything in it, with permissions and times of modification.
    /// Nothing that is a link is followed. Throws PosixError: EEXIST where the destination is there, EINVAL for a
    /// folder that would go into itself, and for a pipe, a socket or a device. What was copied until then is removed.
    virtual void copyItem(const std::string& path, const std::string& destination) = 0;
    /// Removes a file, a link itself, or an empty folder. Throws PosixError, ENOENT where nothing is there, ENOTEMPTY
    /// for a folder with something in it: a path that is wrong by mistake costs nobody a folder.
    virtual void removeFile(const std::string& path) = 0;
    /// Removes a file, a link itself, or a folder with everything in it. Throws PosixError, ENOENT where nothing is
    /// there.
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
