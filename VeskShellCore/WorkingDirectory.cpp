#include "VeskShellCore/WorkingDirectory.hpp"

#include "VeskSupport/FilePath.hpp"

namespace vesk {

std::string absolutePath(FileManager& files, std::string_view path) {
    return absolutePath(path, path.starts_with('/') ? std::string() : files.currentDirectoryPath());
}

} // namespace vesk
