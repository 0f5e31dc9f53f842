#pragma once

#include <string>
#include <string_view>

namespace vesk {

/// The UTF-16 units of UTF-8 `text`; each ill-formed sequence is U+FFFD.
std::u16string utf16Units(std::string_view text);

/// Whether a unit is the first, or the second, of a character that has two.
constexpr bool isFirstUnit(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool isSecondUnit(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

/// The character of a first and a second unit.
constexpr char32_t joinedUnits(char16_t first, char16_t second) {
    return 0x10000U + ((static_cast<char32_t>(first) - 0xD800U) << 10U) + (static_cast<char32_t>(second) - 0xDC00U);
}

} // namespace vesk
