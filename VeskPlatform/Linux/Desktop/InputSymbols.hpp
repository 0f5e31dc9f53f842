#pragma once

#include <cstdint>
#include <optional>
#include <vector>
#include <xkbcommon/xkbcommon.h>

// The symbols of keys (keysyms) that input events stand for; X11 and Wayland number them alike.

namespace vesk {

/// Of KeyboardEvent::keyCode; none for a number that is no key.
std::optional<xkb_keysym_t> symbolOfKeyCode(std::uint16_t keyCode);

/// Of KeyboardEvent::flags, in the order in which they are pressed: control, option, shift, command.
std::vector<xkb_keysym_t> symbolsOfModifiers(std::uint32_t flags);

/// Of a control character that is a key of its own, such as Return for a line feed; none for other characters.
std::optional<xkb_keysym_t> symbolOfControlCharacter(char32_t character);

/// Of any character; none for a control character that is no key.
std::optional<xkb_keysym_t> symbolOfCharacter(char32_t character);

} // namespace vesk
