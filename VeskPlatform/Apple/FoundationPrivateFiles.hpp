#pragma once

#include "VeskPlatform/PrivateFiles.hpp"

namespace vesk {

/// NSFileManager and NSFileHandle; system calls where a number of the system is wanted or nothing else may happen. The
/// files of `writeAtomically` have mode 0600. A pipe or a device in a file's place is refused with EINVAL.
class FoundationPrivateFiles : public PrivateFiles {
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

} // namespace vesk
