#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace vesk {

/// A value of a property list, of the kinds that records need.
struct PropertyListValue {
    struct Data {
        std::string bytes;
        bool operator==(const Data&) const = default;
    };
    using Array = std::vector<PropertyListValue>;
    using Dictionary = std::map<std::string, PropertyListValue>;

    /// The first stands for a kind that records have no use for, such as a date.
    std::variant<std::monostate, bool, std::int64_t, double, std::string, Data, Array, Dictionary> value;

    bool operator==(const PropertyListValue&) const = default;
};

/// Writes binary property lists ("bplist00") and reads those, and XML ones. Safe from any thread.
class PropertyListCoder {
public:
    virtual ~PropertyListCoder() = default;
    /// Throws ErrorRecord for a value of the first kind and for a text or key with a null byte, which would be cut.
    virtual std::string encodeBinary(const PropertyListValue& value) = 0;
    /// Throws DecodingError for bytes that are no property list, or nested too deeply.
    virtual PropertyListValue decode(const std::string& bytes) = 0;
};

} // namespace vesk
