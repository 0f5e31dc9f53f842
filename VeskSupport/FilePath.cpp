#include "VeskSupport/FilePath.hpp"

#include "VeskSupport/Text.hpp"

#include <vector>

namespace vesk {

std::string absolutePath(std::string_view path, std::string_view currentDirectory) {
    if (path.starts_with('/')) return std::string(path);
    return std::string(currentDirectory) + "/" + std::string(path);
}

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

std::string parentPath(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) return {};
    return slash == 0 ? "/" : std::string(path.substr(0, slash));
}

std::string pathExtension(std::string_view path) {
    const std::string name = lastPathComponent(path);
    const std::size_t dot = name.rfind('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == name.size()) return {};
    std::string extension = name.substr(dot + 1);
    return extension.find(' ') == std::string::npos ? extension : std::string();
}

} // namespace vesk
