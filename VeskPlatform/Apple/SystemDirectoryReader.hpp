#pragma once

#include "VeskPlatform/FileManager.hpp"

#include <dirent.h>
#include <memory>

namespace vesk {

/// An open folder through opendir(3) and readdir(3).
class SystemDirectoryReader : public DirectoryReader {
public:
    /// Throws PosixError.
    explicit SystemDirectoryReader(const std::string& path);

    std::optional<DirectoryEntry> next() override;

private:
    struct Closer {
        void operator()(DIR* folder) const { ::closedir(folder); }
    };
    bool isDirectory(const dirent& entry) const;

    std::string path_;
    std::unique_ptr<DIR, Closer> folder_;
};

} // namespace vesk
