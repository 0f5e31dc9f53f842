#include "VeskShellCore/AuthBaseURL.hpp"

#include <algorithm>

namespace vesk {
namespace {

constexpr auto npos = std::string_view::npos;

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isHexadecimal(char c) { return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }
bool areDigits(std::string_view text) { return std::ranges::all_of(text, isDigit); }
bool isPort(std::string_view text) { return !text.empty() && areDigits(text); }

bool isScheme(std::string_view text) {
    const auto belongs = [](char c) { return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.'; };
    return !text.empty() && isLetter(text.front()) && std::ranges::all_of(text, belongs);
}

/// Unreserved and reserved characters, and percent signs with two digits behind them.
bool hasOnlyCharactersOfURLs(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '%') {
            if (i + 2 >= text.size() || !isHexadecimal(text[i + 1]) || !isHexadecimal(text[i + 2])) return false;
        } else if (!isLetter(c) && !isDigit(c) && std::string_view("-._~:/?#[]@!$&'()*+,;=").find(c) == npos) {
            return false;
        }
    }
    return true;
}

/// Brackets around an address of IP version 6 or later, and digits as the port.
bool isAuthority(std::string_view authority) {
    std::string_view host = authority.substr(authority.rfind('@') == npos ? 0 : authority.rfind('@') + 1);
    std::string_view port;
    if (host.starts_with('[')) {
        const auto end = host.find(']');
        if (end == npos) return false;
        port = host.substr(end + 1);
        if (!port.empty() && !port.starts_with(':')) return false;
        host = host.substr(1, end - 1);
    } else {
        port = host.substr(std::min(host.find(':'), host.size()));
        host = host.substr(0, host.size() - port.size());
    }
    if (host.find_first_of("[]") != npos) return false;
    return port.empty() || areDigits(port.substr(1));
}

} // namespace

bool isURLWithScheme(std::string_view text) {
    const auto colon = text.find(':');
    if (colon == npos || !isScheme(text.substr(0, colon)) || !hasOnlyCharactersOfURLs(text)) return false;
    std::string_view rest = text.substr(colon + 1);
    if (isPort(rest.substr(0, rest.find_first_of("/?#")))) return false;
    if (rest.starts_with("//")) {
        rest.remove_prefix(2);
        const auto authority = rest.substr(0, rest.find_first_of("/?#"));
        if (!isAuthority(authority)) return false;
        rest.remove_prefix(authority.size());
    }
    const auto fragment = rest.find('#');
    return rest.find_first_of("[]") == npos && (fragment == npos || rest.find('#', fragment + 1) == npos);
}

std::string appendingPath(const std::string& url, std::string_view path) {
    std::string_view base = std::string_view(url).substr(0, url.find_first_of("?#"));
    const std::string_view behind = std::string_view(url).substr(base.size());
    if (base.ends_with('/') && !base.ends_with("//")) base.remove_suffix(1); // two of them may begin a host
    return std::string(base).append(path).append(behind);
}

} // namespace vesk
