#include "VeskPlatform/Linux/Wayland/PortalScreenshot.hpp"

#include <charconv>

namespace vesk {
namespace {

/// The text with each %XX as the byte that it stands for; none where one is incomplete.
std::optional<std::string> percentDecoded(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result += text[i];
            continue;
        }
        unsigned value = 0;
        const std::string_view digits = text.substr(i + 1, 2);
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
        if (error != std::errc() || end != digits.data() + 2 || value == 0) return std::nullopt;
        result += static_cast<char>(value);
        i += 2;
    }
    return result;
}

} // namespace

std::optional<std::string> pathOfFileUri(std::string_view uri) {
    for (const std::string_view start : {"file://localhost/", "file:///", "file:/"}) {
        if (!uri.starts_with(start)) continue;
        const std::string_view path = uri.substr(start.size() - 1);
        return path.starts_with("//") ? std::nullopt : percentDecoded(path); // "//" names another machine
    }
    return std::nullopt;
}

std::shared_ptr<const Picture> takeScreenshot(DesktopPortal& portal) {
    const BusMessage results = portal.request("Screenshot", "Screenshot", {{'s', ""}}, {{"interactive", false}});
    if (!results) return nullptr;
    const auto path = pathOfFileUri(textOf(readProperties(*results), "uri"));
    return path ? readPng(*path) : nullptr;
}

} // namespace vesk
