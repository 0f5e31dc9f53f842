#include "VeskSupport/FilePath.hpp"

#include <filesystem>

namespace vesk {
namespace {

std::string withoutSlashesAtItsEnd(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    return std::string(path);
}

} // namespace

std::string absolutePath(std::string_view path, std::string_view currentDirectory) {
    if (path.starts_with('/')) return withoutSlashesAtItsEnd(path);
    const auto joined = std::filesystem::path(currentDirectory) / path;
    return withoutSlashesAtItsEnd(joined.lexically_normal().native());
}

std::string parentFolder(std::string_view path) { return withoutSlashesAtItsEnd(path.substr(0, path.rfind('/') + 1)); }

} // namespace vesk
