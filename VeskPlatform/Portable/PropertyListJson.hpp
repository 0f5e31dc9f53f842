#pragma once

#include "VeskPlatform/PropertyListCoder.hpp"
#include "VeskSupport/Json.hpp"

namespace vesk {

/// A property list as JSON: bytes, and values that records have no use for, are null.
JsonValue jsonOf(const PropertyListValue& value);

} // namespace vesk
