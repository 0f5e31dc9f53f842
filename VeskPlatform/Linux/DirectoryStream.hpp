#pragma once

#include <dirent.h>
#include <memory>
#include <string>

namespace vesk {

struct DirectoryCloser {
    void operator()(DIR* directory) const { ::closedir(directory); }
};

/// An open folder; null, with errno, where it could not be opened.
using DirectoryStream = std::unique_ptr<DIR, DirectoryCloser>;

inline DirectoryStream openDirectory(const std::string& path) { return DirectoryStream(::opendir(path.c_str())); }

} // namespace vesk
