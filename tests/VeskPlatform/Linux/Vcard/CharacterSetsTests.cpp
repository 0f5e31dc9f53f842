#include "VeskPlatform/Linux/Vcard/CharacterSets.hpp"

#include <gtest/gtest.h>

namespace vesk::vcard {
namespace {

TEST(CharacterSetsTests, TextsOfEveryAgeBecomeUtf8) {
    struct Case {
        const char *characterSet, *bytes, *expected;
    };
    const Case cases[] = {
        {"ISO-8859-1", "M\xFCller", "Müller"},
        {"iso-8859-15", "\xA4", "€"},
        {"Windows-1252", "\x80", "€"},
        {"windows-1251", "\xC8\xE2\xE0\xED", "Иван"},
        {"SHIFT_JIS", "\x93\x63\x92\x86", "田中"},
        {"ISO-2022-JP", "\x1B$BEDCf\x1B(B", "田中"},
        {"GB2312", "\xC0\xEE", "李"},
        {"SHIFT_JIS", "a\x83", "a\xEF\xBF\xBD"},
        {"windows-1252", "\x1A", "\x1A"},
        {"UTF-8", "Müller", "Müller"},
        {"", "M\xFC", "M\xFC"},
        {"no-such-set", "M\xFC", "M\xFC"},
        {"US-ASCII", "M\xFC", "M\xFC"},
    };
    for (const Case& c : cases) EXPECT_EQ(utf8Of(c.bytes, c.characterSet), c.expected) << c.characterSet;
}

TEST(CharacterSetsTests, NulBytesAndEmptyTexts) {
    EXPECT_EQ(utf8Of(std::string_view("a\0b", 3), "ISO-8859-1"), std::string("a\0b", 3));
    EXPECT_EQ(utf8Of("", "ISO-8859-1"), "");
    EXPECT_EQ(utf8Of("a", std::string(10'000, 'x')), "a");
}

} // namespace
} // namespace vesk::vcard
