#pragma once

#include "VeskShellCore/CapabilityModels.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vesk {

/// The keys that can be pressed by name.
enum class SupportedControlKey { return_, tab, escape, space, delete_, left, right, up, down };

template <>
inline constexpr auto rawValueTable<SupportedControlKey> =
    std::to_array<std::pair<SupportedControlKey, std::string_view>>({
        {SupportedControlKey::return_, "return"},
        {SupportedControlKey::tab, "tab"},
        {SupportedControlKey::escape, "escape"},
        {SupportedControlKey::space, "space"},
        {SupportedControlKey::delete_, "delete"},
        {SupportedControlKey::left, "left"},
        {SupportedControlKey::right, "right"},
        {SupportedControlKey::up, "up"},
        {SupportedControlKey::down, "down"},
    });

/// The key of a name, of which "enter" is another one for `return_`. Case counts.
std::optional<SupportedControlKey> parseSupportedControlKey(std::string_view value);

/// All names, as a sentence for people goes on after "Use one of: ".
std::string supportedControlKeyList();

/// As KeyboardEvent::keyCode.
std::uint16_t virtualKeyCode(SupportedControlKey key);

/// As KeyboardEvent::flags, all modifiers together.
std::uint32_t eventFlags(const std::vector<CapabilityKeyModifier>& modifiers);

} // namespace vesk
