#pragma once

#include "VeskPlatform/ByteOutput.hpp"
#include "VeskSupport/Records.hpp"

#include <functional>
#include <string>
#include <utility>

namespace vesk {

/// Writes JSON in the one layout that the broker has.
struct JsonEncoder {
    /// Throws ErrorRecord for a value that JSON has no word for.
    std::string encode(const JsonValue& value) const { return writeJson(value, SlashStyle::escaped); }
};

/// Any record, known only as something that can be encoded.
struct AnyEncodable {
    std::function<std::string(const JsonEncoder&)> encodeClosure;

    template <Record R>
    AnyEncodable(R record)
        : encodeClosure(
            [value = std::move(record)](const JsonEncoder& encoder) { return encoder.encode(toJson(value)); }) {}
};

/// Encodes `value`, writes it and then a line break. Nothing is written where encoding fails.
void writeJSON(const AnyEncodable& value, ByteOutput& output);

} // namespace vesk
