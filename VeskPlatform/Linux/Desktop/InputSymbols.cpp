#include "VeskPlatform/Linux/Desktop/InputSymbols.hpp"

#include <algorithm>
#include <array>
#include <utility>

namespace vesk {
namespace {

constexpr auto keyCodes = std::to_array<std::pair<std::uint16_t, xkb_keysym_t>>({
    {36, XKB_KEY_Return},
    {48, XKB_KEY_Tab},
    {49, XKB_KEY_space},
    {51, XKB_KEY_BackSpace},
    {53, XKB_KEY_Escape},
    {123, XKB_KEY_Left},
    {124, XKB_KEY_Right},
    {125, XKB_KEY_Down},
    {126, XKB_KEY_Up},
});

constexpr auto modifiers = std::to_array<std::pair<std::uint32_t, xkb_keysym_t>>({
    {0x40000, XKB_KEY_Control_L},
    {0x80000, XKB_KEY_Alt_L},
    {0x20000, XKB_KEY_Shift_L},
    {0x100000, XKB_KEY_Super_L},
});

/// Characters that are keys of their own.
constexpr auto controlCharacters = std::to_array<std::pair<char32_t, xkb_keysym_t>>({
    {U'\b', XKB_KEY_BackSpace},
    {U'\t', XKB_KEY_Tab},
    {U'\n', XKB_KEY_Return},
    {U'\r', XKB_KEY_Return},
    {U'\x1B', XKB_KEY_Escape},
    {U'\x7F', XKB_KEY_Delete},
});

template <class Table, class Key> std::optional<xkb_keysym_t> symbolIn(const Table& table, Key key) {
    const auto found = std::ranges::find(table, key, &Table::value_type::first);
    return found == table.end() ? std::nullopt : std::optional(found->second);
}

} // namespace

std::optional<xkb_keysym_t> symbolOfKeyCode(std::uint16_t keyCode) { return symbolIn(keyCodes, keyCode); }

std::vector<xkb_keysym_t> symbolsOfModifiers(std::uint32_t flags) {
    std::vector<xkb_keysym_t> symbols;
    for (const auto& [flag, symbol] : modifiers)
        if ((flags & flag) != 0) symbols.push_back(symbol);
    return symbols;
}

std::optional<xkb_keysym_t> symbolOfControlCharacter(char32_t character) {
    return symbolIn(controlCharacters, character);
}

std::optional<xkb_keysym_t> symbolOfCharacter(char32_t character) {
    if (const auto key = symbolOfControlCharacter(character)) return key;
    if (character < 0x20) return std::nullopt;
    const xkb_keysym_t symbol = xkb_utf32_to_keysym(character);
    return symbol == XKB_KEY_NoSymbol ? std::nullopt : std::optional(symbol);
}

} // namespace vesk
