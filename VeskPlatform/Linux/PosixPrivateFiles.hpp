#pragma once

#include "VeskPlatform/PrivateFiles.hpp"

namespace vesk {

/// The files of `writeAtomically` have mode 0600. Nothing waits: a pipe or a device in a file's place is refused with
/// EINVAL.
class PosixPrivateFiles : public PrivateFiles {
public:
    void createDirectories(const std::string& path, unsigned mode) override;
    void setPermissions(const std::string& path, unsigned mode) override;
    bool exists(const std::string& path) override;
    void createFile(const std::string& path, unsigned mode) override;
    void writeThrough(const std::string& path, std::string_view bytes) override;
    void rename(const std::string& path, const std::string& newPath) override;
    void removeFile(const std::string& path) override;
    void append(const std::string& path, std::string_view bytes) override;
    void writeAtomically(const std::string& path, std::string_view bytes) override;
};

/// Creates a folder and its missing ancestors with `mode` (less the process's mask). Throws PosixError, EEXIST where a
/// file stands in a folder's place.
void makeFolders(const std::string& path, unsigned mode);

} // namespace vesk
