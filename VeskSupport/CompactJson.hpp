#pragma once

#include "VeskSupport/Json.hpp"

#include <string>

namespace vesk {

/// The same document as `writeJson` writes, without a blank or a line break that means nothing. Fails alike.
std::string writeCompactJson(const JsonValue& value);

} // namespace vesk
