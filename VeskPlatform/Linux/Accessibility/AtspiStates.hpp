#pragma once

#include <atspi/atspi-constants.h>
#include <cstdint>

namespace vesk {

/// The states of an element, one bit for each AtspiStateType.
struct AtspiStates {
    std::uint64_t bits = 0;

    bool has(AtspiStateType state) const { return (bits >> state & 1U) != 0; }
    bool operator==(const AtspiStates&) const = default;
};

} // namespace vesk
