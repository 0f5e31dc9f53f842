#pragma once

#include "VeskPlatform/PropertyListCoder.hpp"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vesk {

/// Secrets of an installation in the clear; whoever holds one protects it. The keys of its property list are its
/// fields, all required.
struct ReleaseStateSecretArchive {
    /// 1.
    std::int64_t schemaVersion = 0;
    /// The live service.
    std::string sourceService;
    /// The accounts that this build knows, in their order.
    std::vector<std::string> accounts;
    /// By account; one that is missing was not set.
    std::map<std::string, std::string> values;

    bool operator==(const ReleaseStateSecretArchive&) const = default;
};

PropertyListValue toPropertyList(const ReleaseStateSecretArchive& archive);

/// Reads the fields and judges nothing else; keys that are no fields are passed over. Throws DecodingError.
ReleaseStateSecretArchive readSecretArchive(const PropertyListValue& list);

} // namespace vesk
