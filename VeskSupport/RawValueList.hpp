#pragma once

#include "VeskSupport/Records.hpp"

#include <string>

namespace vesk {

/// The raw strings of an enumeration in its own order, with ", " between them.
template <RawEnumeration E> std::string joinedRawValues() {
    std::string result;
    for (const auto& [value, raw] : rawValueTable<E>) {
        if (!result.empty()) result += ", ";
        result += raw;
    }
    return result;
}

} // namespace vesk
