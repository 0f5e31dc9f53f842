#pragma once

#include <string>
#include <string_view>

namespace vesk {

/// The file verbs of what the program keeps for itself: its log, and records that have to survive a crash. Each throws
/// PosixError, or the system's own failure as in FileManager. Safe from one thread at a time.
class PrivateFiles {
public:
    virtual ~PrivateFiles() = default;
    /// Makes the folder and those above it that are not there, each with these permission bits, less the process's
    /// mask. One that is there keeps its own. EEXIST where a file stands in a folder's place.
    virtual void createDirectories(const std::string& path, unsigned mode) = 0;
    /// POSIX permission bits, such as 0700.
    virtual void setPermissions(const std::string& path, unsigned mode) = 0;
    /// Whether anything is there, a link followed.
    virtual bool exists(const std::string& path) = 0;
    /// A new empty file with exactly these permission bits; EEXIST where anything is there, also a link.
    virtual void createFile(const std::string& path, unsigned mode) = 0;
    /// Opens an existing file, replaces what it holds, waits until the disk has it and closes it.
    virtual void writeThrough(const std::string& path, std::string_view bytes) = 0;
    /// In one step, over a file that is there; both are in one file system.
    virtual void rename(const std::string& path, const std::string& newPath) = 0;
    /// A file, or a link itself; ENOENT where nothing is there, EISDIR for a folder.
    virtual void removeFile(const std::string& path) = 0;
    /// Opens an existing file, writes at its end, closes it.
    virtual void append(const std::string& path, std::string_view bytes) = 0;
    /// Writes a new file whole under a temporary name and renames it into place.
    virtual void writeAtomically(const std::string& path, std::string_view bytes) = 0;
};

} // namespace vesk
