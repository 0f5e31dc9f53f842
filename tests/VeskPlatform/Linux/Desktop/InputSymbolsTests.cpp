#include "VeskPlatform/Linux/Desktop/InputSymbols.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

TEST(InputSymbols, EachKeyCodeIsItsKey) {
    const std::pair<std::uint16_t, xkb_keysym_t> keys[] = {
        {36, 0xFF0D},  {48, 0xFF09},  {49, 0x20},    {51, 0xFF08},  {53, 0xFF1B},
        {123, 0xFF51}, {124, 0xFF53}, {125, 0xFF54}, {126, 0xFF52},
    };
    for (const auto& [code, symbol] : keys) EXPECT_EQ(symbolOfKeyCode(code), symbol) << code;
    EXPECT_EQ(symbolOfKeyCode(0), std::nullopt);
}

TEST(InputSymbols, ModifiersHaveAnOrder) {
    EXPECT_EQ(symbolsOfModifiers(0), std::vector<xkb_keysym_t>{});
    EXPECT_EQ(symbolsOfModifiers(0x20000), std::vector<xkb_keysym_t>{0xFFE1});
    EXPECT_EQ(symbolsOfModifiers(0x1E0000), (std::vector<xkb_keysym_t>{0xFFE3, 0xFFE9, 0xFFE1, 0xFFEB}));
}

TEST(InputSymbols, OnlySomeControlCharactersAreKeys) {
    EXPECT_EQ(symbolOfControlCharacter(U'\n'), 0xFF0DU);
    EXPECT_EQ(symbolOfControlCharacter(U'\x01'), std::nullopt);
    EXPECT_EQ(symbolOfControlCharacter(U'a'), std::nullopt);
}

TEST(InputSymbols, CharactersAreTypedByTheSymbolThatLayoutsHave) {
    const std::pair<char32_t, std::optional<xkb_keysym_t>> cases[] = {
        {U'a', 0x61},
        {U' ', 0x20},
        {U'\u00e4', 0xE4},
        {U'\u20ac', 0x20AC},
        {U'\u2192', 0x8FD},
        {U'\u4e2d', 0x1004E2D},
        {U'\U0001F600', 0x101F600},
        {U'\b', 0xFF08},
        {U'\t', 0xFF09},
        {U'\n', 0xFF0D},
        {U'\r', 0xFF0D},
        {U'\x1B', 0xFF1B},
        {U'\x7F', 0xFFFF},
        {U'\0', std::nullopt},
        {U'\x01', std::nullopt},
    };
    for (const auto& [character, symbol] : cases)
        EXPECT_EQ(symbolOfCharacter(character), symbol) << static_cast<std::uint32_t>(character);
}

} // namespace
} // namespace vesk::test
