#pragma once

#include <string>
#include <string_view>

namespace vesk {

/// The file verbs of a private log. Each throws PosixError. Safe from one thread at a time.
class PrivateFiles {
public:
    virtual ~PrivateFiles() = default;
    virtual void createDirectories(const std::string& path) = 0;
    /// POSIX permission bits, such as 0700.
    virtual void setPermissions(const std::string& path, unsigned mode) = 0;
    virtual bool exists(const std::string& path) = 0;
    /// Opens an existing file, writes at its end, closes it.
    virtual void append(const std::string& path, std::string_view bytes) = 0;
    /// Writes a new file whole under a temporary name and renames it into place.
    virtual void writeAtomically(const std::string& path, std::string_view bytes) = 0;
};

} // namespace vesk
