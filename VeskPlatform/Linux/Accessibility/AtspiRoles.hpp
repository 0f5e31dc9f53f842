#pragma once

#include "VeskPlatform/Linux/Accessibility/AtspiStates.hpp"

#include <cstdint>
#include <string_view>

// The roles of AT-SPI in the AX vocabulary.

namespace vesk {

/// The AX role and subrole of an element; the subrole is empty where it has none.
struct AxRole {
    std::string_view role;
    std::string_view subrole;

    bool operator==(const AxRole&) const = default;
};

/// By its role (a number of AtspiRole) and states. A role that is not known is "AXUnknown". The multi-line state makes
/// a field an area, and so does the focus that an editable piece of a document may take.
AxRole axRoleOf(std::uint32_t role, AtspiStates states);

/// Whether an element of this role holds text as its value.
bool holdsText(const AxRole& role);
/// Whether its value is a number from a range.
bool holdsNumber(const AxRole& role);
/// Whether the user may change such a number.
bool takesNumber(const AxRole& role);
/// Whether its value is that it is checked, selected or pressed.
bool holdsCheck(const AxRole& role);
/// Whether its children are the items of a collection, of which there may be very many.
bool holdsItems(const AxRole& role);

} // namespace vesk
