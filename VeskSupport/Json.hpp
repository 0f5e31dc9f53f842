#pragma once

#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/JsonObject.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vesk {

/// A JSON value.
struct JsonValue {
    using Array = std::vector<JsonValue>;
    using Object = JsonObject;

    std::variant<std::nullptr_t, bool, std::int64_t, double, std::string, Array, Object> value = nullptr;

    bool operator==(const JsonValue&) const = default;
};

/// A document that is no JSON or does not hold the record that was asked for. Domain "NSCocoaErrorDomain", code 4864
/// (unreadable) or 4865 (a required key is missing); the description names the path of the field.
class DecodingError : public ErrorRecord {
public:
    enum class Kind { corrupt = 4864, keyNotFound = 4865 };
    DecodingError(Kind kind, std::string description);
};

struct JsonLimits {
    std::size_t bytes = std::size_t{256} << 20;
    std::size_t depth = 256;
};

/// Reads one JSON document (RFC 8259, UTF-8, a byte order mark is passed over). Of a repeated key the last counts.
/// Throws DecodingError, also beyond `limits`.
JsonValue parseJson(std::string_view text, const JsonLimits& limits = {});

enum class SlashStyle { escaped, plain };

/// Pretty-printed: two blanks a level, ` : ` between key and value, keys in order, an empty list or object as its
/// brackets with an empty line between. Ill-formed UTF-8 becomes U+FFFD. Not-a-number and infinities throw
/// ErrorRecord, since JSON has no word for them.
std::string writeJson(const JsonValue& value, SlashStyle slashes = SlashStyle::escaped);

} // namespace vesk
