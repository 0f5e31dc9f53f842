#pragma once

#include <cstddef>
#include <string_view>

namespace vesk::maildir {

/// Where the headers at the front of `bytes` end, behind their empty line (LF or CR LF); npos where none stands there.
inline std::size_t endOfHeaders(std::string_view bytes) {
    for (std::size_t line = 0; line < bytes.size();) {
        if (bytes[line] == '\n') return line + 1;
        if (bytes.substr(line).starts_with("\r\n")) return line + 2;
        const std::size_t end = bytes.find('\n', line);
        if (end == std::string_view::npos) break;
        line = end + 1;
    }
    return std::string_view::npos;
}

} // namespace vesk::maildir
