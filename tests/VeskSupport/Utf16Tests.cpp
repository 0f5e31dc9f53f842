#include "VeskSupport/Utf16.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

TEST(Utf16, ACharacterOutsideTheBasicPlaneIsTwoUnits) {
    EXPECT_EQ(utf16Units(""), u"");
    EXPECT_EQ(utf16Units("a\u00e4\u20ac\n"), u"a\u00e4\u20ac\n");
    EXPECT_EQ(utf16Units("\U0001F600"), (std::u16string{0xD83D, 0xDE00}));
    EXPECT_EQ(utf16Units(std::string_view("\0a", 2)), (std::u16string{0, u'a'}));
}

TEST(Utf16, TwoUnitsAreJoinedToTheirCharacter) {
    for (const char32_t character : {U'\U00010000', U'\U0001F600', U'\U0010FFFF'}) {
        const std::u16string units{static_cast<char16_t>(0xD7C0 + (character >> 10U)),
                                   static_cast<char16_t>(0xDC00 + (character & 0x3FFU))};
        EXPECT_TRUE(isFirstUnit(units[0]) && !isSecondUnit(units[0]));
        EXPECT_TRUE(isSecondUnit(units[1]) && !isFirstUnit(units[1]));
        EXPECT_EQ(joinedUnits(units[0], units[1]), character);
    }
    for (const char16_t unit : {u'\uD7FF', u'\uE000'}) EXPECT_FALSE(isFirstUnit(unit) || isSecondUnit(unit));
}

TEST(Utf16, WhatIsIllFormedIsReplaced) {
    EXPECT_EQ(utf16Units("a\xff"), u"a\uFFFD");
    EXPECT_EQ(utf16Units("\xed\xa0\x80"), u"\uFFFD\uFFFD\uFFFD") << "a lone surrogate";
}

} // namespace
} // namespace vesk
