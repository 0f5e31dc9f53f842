#include "VeskSupport/CompactJson.hpp"

#include "VeskSupport/JsonWriter.hpp"

namespace vesk {

std::string writeCompactJson(const JsonValue& value) {
    return jsonText(value, SlashStyle::escaped, JsonSpacing::compact);
}

} // namespace vesk
