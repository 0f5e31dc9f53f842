#include "VeskShellCore/PathProbe.hpp"

namespace vesk {

void tryReading(FileManager& files, const std::string& path, const FileAttributes& attributes) {
    if (attributes.isDirectory)
        (void)files.openDirectory(path)->next(); // the first name needs the same permission as all of them
    else
        (void)files.firstBytes(path, 1);
}

std::string expandedTilde(const std::string& path, const std::string& homeDirectory) {
    return path == "~" || path.starts_with("~/") ? homeDirectory + path.substr(1) : path;
}

} // namespace vesk
