#include "VeskPlatform/Linux/Maildir/AddressGroups.hpp"

#include <algorithm>
#include <array>
#include <string_view>
#include <strings.h>

namespace vesk::maildir {
namespace {

constexpr int mostColons = 100;

bool isBlank(char c) { return c == ' ' || c == '\t'; }

bool namesAddresses(std::string_view line) {
    static constexpr std::array<std::string_view, 6> headers{"From", "To", "Cc", "Bcc", "Sender", "Reply-To"};
    return std::ranges::any_of(headers, [line](std::string_view header) {
        if (line.size() <= header.size() || ::strncasecmp(line.data(), header.data(), header.size()) != 0) return false;
        const std::size_t behind = line.find_first_not_of(" \t", header.size());
        return behind != std::string_view::npos && line[behind] == ':';
    });
}

/// Where the line at `begin` ends, behind its line feed.
std::size_t endOfLine(std::string_view bytes, std::size_t begin) {
    return std::min(bytes.find('\n', begin), bytes.size() - 1) + 1;
}

/// The same for a header with all lines that it is folded into.
std::size_t endOfHeader(std::string_view bytes, std::size_t begin) {
    std::size_t end = endOfLine(bytes, begin);
    while (end < bytes.size() && isBlank(bytes[end])) end = endOfLine(bytes, end);
    return end;
}

} // namespace

void flattenAddressGroups(std::string& bytes) {
    for (std::size_t begin = 0, end = 0; begin < bytes.size(); begin = end) {
        end = endOfLine(bytes, begin);
        if (!namesAddresses(std::string_view(bytes).substr(begin, end - begin))) continue;
        end = endOfHeader(bytes, begin);
        int colons = 0;
        for (std::size_t i = begin; i < end; ++i)
            if (bytes[i] == ':' && ++colons > mostColons) bytes[i] = ' ';
    }
}

} // namespace vesk::maildir
