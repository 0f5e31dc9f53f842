#pragma once

#include "VeskPlatform/PropertyListCoder.hpp"
#include "VeskSupport/Json.hpp"

#include <optional>
#include <string_view>

namespace vesk {

/// Reads a property list, XML or binary. None where `bytes` are no property list, or are deeper than anybody writes
/// them.
std::optional<PropertyListValue> readPropertyList(std::string_view bytes);

/// The same as JSON. Values that JSON has no word for (dates, bytes, references) are null.
std::optional<JsonValue> parsePropertyList(std::string_view bytes);

/// Through libplist.
class LibplistCoder : public PropertyListCoder {
public:
    std::string encodeBinary(const PropertyListValue& value) override;
    PropertyListValue decode(const std::string& bytes) override;
};

} // namespace vesk
