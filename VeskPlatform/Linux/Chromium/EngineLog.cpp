#include "VeskPlatform/Linux/Chromium/EngineLog.hpp"

#include "VeskSupport/Text.hpp"

#include <fstream>
#include <iterator>

namespace vesk {

std::string refusalLine(std::string_view url) {
    const std::size_t colon = url.find(':');
    std::string line = "pdf-render refused scheme=" + std::string(url.substr(0, colon));
    constexpr std::string_view slashes = "://";
    if (colon == std::string_view::npos || !url.substr(colon).starts_with(slashes)) return line;
    const std::string_view rest = url.substr(colon + slashes.size());
    const std::string_view authority = rest.substr(0, rest.find_first_of("/?#"));
    const std::string_view host = authority.substr(authority.rfind('@') + 1); // all of it where there is none
    return host.empty() ? line : line + " host=" + std::string(host);
}

std::optional<std::string> refusedFileLine(std::string_view message) {
    constexpr std::string_view refusal = "Not allowed to load local resource: ";
    if (!message.starts_with(refusal)) return std::nullopt;
    return refusalLine(message.substr(refusal.size()));
}

std::string startFailure(const std::string& logPath, const std::string& reason) {
    std::ifstream file(logPath, std::ios::binary);
    const std::string said{std::istreambuf_iterator<char>(file), {}};
    const std::string lower = lowercased(repairedUtf8(said));
    if (lower.find("no usable sandbox") != std::string::npos || lower.find("suid sandbox") != std::string::npos)
        return "The browser engine cannot use its sandbox here. Allow unprivileged user namespaces or install the "
               "Debian package chromium-sandbox; where the HTML is trusted, VESK_CHROMIUM_NO_SANDBOX=1 does without.";
    if (lower.find("error while loading shared libraries") != std::string::npos)
        return "The browser engine is incomplete. Reinstall the Debian package chromium-headless-shell.";
    return "The browser engine did not start. " + reason;
}

} // namespace vesk
