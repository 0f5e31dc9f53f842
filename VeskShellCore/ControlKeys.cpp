#include "VeskShellCore/ControlKeys.hpp"

#include "VeskSupport/RawValueList.hpp"

#include <algorithm>

namespace vesk {
namespace {

constexpr auto virtualKeyCodes = std::to_array<std::pair<SupportedControlKey, std::uint16_t>>({
    {SupportedControlKey::return_, 36},
    {SupportedControlKey::tab, 48},
    {SupportedControlKey::escape, 53},
    {SupportedControlKey::space, 49},
    {SupportedControlKey::delete_, 51},
    {SupportedControlKey::left, 123},
    {SupportedControlKey::right, 124},
    {SupportedControlKey::up, 126},
    {SupportedControlKey::down, 125},
});

constexpr auto flagMasks = std::to_array<std::pair<CapabilityKeyModifier, std::uint32_t>>({
    {CapabilityKeyModifier::command, 0x100000},
    {CapabilityKeyModifier::shift, 0x20000},
    {CapabilityKeyModifier::option, 0x80000},
    {CapabilityKeyModifier::control, 0x40000},
});

template <class Table> constexpr bool listsAll(const Table& table) {
    using Key = typename Table::value_type::first_type;
    return std::ranges::equal(table, rawValueTable<Key>, {}, &Table::value_type::first,
                              &std::pair<Key, std::string_view>::first);
}
static_assert(listsAll(virtualKeyCodes) && listsAll(flagMasks));

} // namespace

std::optional<SupportedControlKey> parseSupportedControlKey(std::string_view value) {
    return value == "enter" ? SupportedControlKey::return_ : fromRawValue<SupportedControlKey>(value);
}

std::string supportedControlKeyList() {
    return joinedRawValues<SupportedControlKey>() + ", or `enter` as an alias for `return`";
}

std::uint16_t virtualKeyCode(SupportedControlKey key) {
    return std::ranges::find(virtualKeyCodes, key, &decltype(virtualKeyCodes)::value_type::first)->second;
}

std::uint32_t eventFlags(const std::vector<CapabilityKeyModifier>& modifiers) {
    std::uint32_t flags = 0;
    for (const auto& [modifier, mask] : flagMasks)
        if (std::ranges::count(modifiers, modifier) > 0) flags |= mask;
    return flags;
}

} // namespace vesk
