#pragma once

#include "VeskSupport/Json.hpp"

#include <string>

namespace vesk {

enum class JsonSpacing { pretty, compact };

/// The one way in which documents are written; `writeJson` and `writeCompactJson` tell what they look like.
std::string jsonText(const JsonValue& value, SlashStyle slashes, JsonSpacing spacing);

} // namespace vesk
