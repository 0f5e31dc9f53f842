#include "VeskShellCore/ICloudPaths.hpp"

#include "VeskShellCore/ICloudError.hpp"
#include "VeskSupport/Text.hpp"

#include <vector>

namespace vesk {

std::optional<std::string> normalizeRelativePath(const std::optional<std::string>& path) {
    const std::string_view text = path ? trimmed(*path) : std::string_view();
    if (text.starts_with('/')) throw ICloudError(400, "iCloud paths must be relative to the selected iCloud root.");
    std::vector<std::string> kept;
    for (const std::string& piece : split(text, '/')) {
        const std::string_view part = trimmed(piece);
        if (part == "..") throw ICloudError(400, "iCloud paths cannot traverse outside the selected iCloud root.");
        if (!part.empty() && part != ".") kept.emplace_back(part);
    }
    if (kept.empty()) return std::nullopt;
    return joined(kept, "/");
}

std::string appendRelativePath(const std::optional<std::string>& base, std::string_view name) {
    return base && !base->empty() ? *base + "/" + std::string(name) : std::string(name);
}

} // namespace vesk
