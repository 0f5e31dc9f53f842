#include "VeskSupport/CompactJson.hpp"

namespace vesk {

/// Within strings, the pretty form has no line breaks, and blanks that count.
std::string writeCompactJson(const JsonValue& value) {
    std::string compact;
    bool inString = false, escaped = false;
    for (const char character : writeJson(value)) {
        if (!inString && (character == ' ' || character == '\n')) continue;
        if (character == '"' && !escaped) inString = !inString;
        escaped = character == '\\' && !escaped;
        compact += character;
    }
    return compact;
}

} // namespace vesk
