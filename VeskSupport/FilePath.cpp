#include "VeskSupport/FilePath.hpp"

#include "VeskSupport/Text.hpp"

#include <filesystem>
#include <vector>

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

std::string standardizedPath(std::string_view absolutePath) {
    std::vector<std::string> kept;
    for (std::string& component : split(absolutePath, '/')) {
        if (component.empty() || component == ".") continue;
        if (component != "..")
            kept.push_back(std::move(component));
        else if (!kept.empty())
            kept.pop_back();
    }
    return "/" + joined(kept, "/");
}

std::string lastPathComponent(std::string_view path) {
    if (path == "/") return "/";
    return std::string(path.substr(path.rfind('/') + 1)); // the whole where there is no slash
}

std::string pathExtension(std::string_view path) {
    const std::string name = lastPathComponent(path);
    const std::size_t dot = name.rfind('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == name.size()) return {};
    std::string extension = name.substr(dot + 1);
    return extension.find(' ') == std::string::npos ? extension : std::string();
}

} // namespace vesk
