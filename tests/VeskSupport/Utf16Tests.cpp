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

TEST(Utf16, WhatIsIllFormedIsReplaced) {
    EXPECT_EQ(utf16Units("a\xff"), u"a\uFFFD");
    EXPECT_EQ(utf16Units("\xed\xa0\x80"), u"\uFFFD\uFFFD\uFFFD") << "a lone surrogate";
}

} // namespace
} // namespace vesk
