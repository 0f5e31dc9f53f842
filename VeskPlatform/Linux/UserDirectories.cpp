#include "VeskPlatform/Linux/UserDirectories.hpp"

#include "VeskSupport/Text.hpp"

namespace vesk {
namespace {

std::string_view withoutBlanksBefore(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t");
    return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

/// The value of a line of that key, with its quotes: what follows "=".
std::optional<std::string_view> quotedValue(std::string_view line, const std::string& key) {
    line = withoutBlanksBefore(line);
    if (!line.starts_with(key)) return std::nullopt;
    line = withoutBlanksBefore(line.substr(key.size()));
    if (!line.starts_with('=')) return std::nullopt;
    return withoutBlanksBefore(line.substr(1));
}

/// The text between double quotes, as a shell reads it; none where they are not closed.
std::optional<std::string> unquoted(std::string_view text) {
    if (!text.starts_with('"')) return std::nullopt;
    std::string value;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == '"') return value;
        if (text[i] == '\\' && i + 1 < text.size()) ++i;
        value += text[i];
    }
    return std::nullopt;
}

std::optional<std::string> absoluteValue(const std::string& value, const std::string& homeDirectory) {
    static constexpr std::string_view home = "$HOME";
    if (value.starts_with('/')) return value;
    if (value == home || value.starts_with("$HOME/")) return homeDirectory + value.substr(home.size());
    return std::nullopt;
}

} // namespace

std::optional<std::string> userDirectory(std::string_view fileText, std::string_view name,
                                         const std::string& homeDirectory) {
    const std::string key = "XDG_" + std::string(name) + "_DIR";
    std::optional<std::string> found;
    for (const std::string_view line : lines(fileText)) {
        const auto quoted = quotedValue(line, key);
        const auto value = quoted ? unquoted(*quoted) : std::nullopt;
        if (!value) continue;
        if (auto path = absoluteValue(*value, homeDirectory)) found = std::move(path);
    }
    return found;
}

} // namespace vesk
