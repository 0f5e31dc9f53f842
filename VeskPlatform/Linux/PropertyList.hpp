#pragma once

#include "VeskSupport/Json.hpp"

#include <optional>
#include <string_view>

namespace vesk {

/// Reads a property list, XML or binary. Values that JSON has no word for (dates, bytes, references) are null. None
/// where `bytes` are no property list, or are deeper than anybody writes them.
std::optional<JsonValue> parsePropertyList(std::string_view bytes);

} // namespace vesk
