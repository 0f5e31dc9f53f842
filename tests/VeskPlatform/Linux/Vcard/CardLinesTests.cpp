#include "VeskPlatform/Linux/Vcard/CardLines.hpp"

#include <gmock/gmock.h>

namespace vesk::vcard {
namespace {

std::string card(const std::string& lines) { return "BEGIN:VCARD\r\n" + lines + "END:VCARD\r\n"; }

/// The first property of the card with that name, as `parameters|value`.
std::string shown(const std::string& lines, std::string_view name) {
    const std::string text = card(lines);
    const CardLines parsed(text);
    const CardLine* line = parsed.first(name);
    if (!line) return "none";
    const CardProperty property = parsed.property(*line);
    std::string result;
    for (const CardParameter& parameter : property.parameters) result += parameter.name + "=" + parameter.value + " ";
    return result + "|" + property.value;
}

TEST(CardLinesTests, ParametersAndValue) {
    struct Case {
        const char *name, *lines, *expected;
    };
    const Case cases[] = {
        {"plain", "TEL:1\r\n", "|1"},
        {"lower case", "tel:1\r\n", "|1"},
        {"group", "item1.TEL:1\r\n", "|1"},
        {"parameter", "TEL;type=HOME:1\r\n", "TYPE=HOME |1"},
        {"several", "TEL;TYPE=HOME;TYPE=VOICE;PREF=1:1\r\n", "TYPE=HOME TYPE=VOICE PREF=1 |1"},
        {"bare words", "TEL;HOME;VOICE;QUOTED-PRINTABLE:1\r\n", "TYPE=HOME TYPE=VOICE ENCODING=QUOTED-PRINTABLE |1"},
        {"quoted list", "TEL;TYPE=\"home,work\":1\r\n", "TYPE=home,work |1"},
        {"quoted colon and semicolon", "TEL;X=\"a:b;c\":1\r\n", "X=a:b;c |1"},
        {"a missing quotation mark", "TEL;TYPE=\"home:1\r\n", "TYPE=home |1"},
        {"a missing quotation mark with more", "TEL;TYPE=\"home;X=y:1\"\r\n", "TYPE=home;X=y |1\""},
        {"blanks", "TEL ; TYPE = HOME :1\r\n", "TYPE=HOME |1"},
        {"colons in the value", "TEL:a:b;c\r\n", "|a:b;c"},
        {"no value", "TEL:\r\n", "|"},
        {"no colon", "TEL;HOME\r\n", "TYPE=HOME |"},
        {"neither colon nor semicolon", "TEL\r\n", "none"},
        {"carets outside 4.0", "TEL;X=a^nb:1\r\n", "X=a^nb |1"},
        {"carets in 4.0", "VERSION:4.0\r\nTEL;X=a^nb^^c^'d^e:1\r\n", "X=a\nb^c\"d^e |1"},
    };
    for (const Case& c : cases) EXPECT_EQ(shown(c.lines, "TEL"), c.expected) << c.name;
}

TEST(CardLinesTests, FoldedLines) {
    struct Case {
        const char *name, *lines, *expected;
    };
    const Case cases[] = {
        {"3.0", "VERSION:3.0\r\nTEL:1\r\n 2\r\n\t3\r\n", "|123"},
        {"3.0 keeps further blanks", "TEL:1\r\n  2\r\n", "|1 2"},
        {"2.1 keeps the blank", "VERSION:2.1\r\nTEL:1\r\n 2\r\n", "|1 2"},
        {"within the name", "TE\r\n L:1\r\n", "|1"},
        {"within a parameter", "TEL;TY\r\n PE=HO\r\n ME:1\r\n", "TYPE=HOME |1"},
        {"within a character", "TEL:\xC3\r\n \xA4\r\n", "|\xC3\xA4"},
        {"only blanks", "TEL:1\r\n \r\n", "|1"},
        {"bare LF", "TEL:1\n 2\n", "|12"},
        {"bare CR", "TEL:1\r 2\r", "|12"},
        {"ends at an empty line", "TEL:1\r\n\r\n 2\r\n", "|1"},
    };
    for (const Case& c : cases) EXPECT_EQ(shown(c.lines, "TEL"), c.expected) << c.name;
}

TEST(CardLinesTests, SoftLineBreaks) {
    const std::string head = "TEL;ENCODING=QUOTED-PRINTABLE:";
    const std::string parsedHead = "ENCODING=QUOTED-PRINTABLE |";
    EXPECT_EQ(shown(head + "a=\r\nb=\r\nc\r\nFN:x\r\n", "TEL"), parsedHead + "abc");
    EXPECT_EQ(shown(head + "a=\r\n b\r\n", "TEL"), parsedHead + "a b") << "a blank is text behind a soft break";
    EXPECT_EQ(shown(head + "a=\r\n", "TEL"), parsedHead + "a") << "the end of the card is none of it";
    EXPECT_EQ(shown(head + "a=\r\nEMAIL:b\r\n", "EMAIL"), "none") << "whatever stands there";
    EXPECT_EQ(shown("TEL;QUOTED-PRINTABLE:a=\r\nb\r\n", "TEL"), parsedHead + "ab");
    EXPECT_EQ(shown("TEL;ENCODING=\r\n QUOTED-PRINTABLE:a=\r\nb\r\n", "TEL"), parsedHead + "ab") << "folded parameters";
    EXPECT_EQ(shown("PHOTO;ENCODING=b:a=\r\nTEL:1\r\n", "TEL"), "|1") << "base64 ends in the same sign";
    EXPECT_EQ(shown("NOTE;X=quoted-printable:a=\r\nTEL:1\r\n", "TEL"), "|1") << "not its encoding";
}

TEST(CardLinesTests, GroupsAndRanges) {
    const std::string text = card("Item7.Tel;TYPE=HOME:1\r\n 2\r\nFN:x\r\n");
    const CardLines parsed(text);
    ASSERT_EQ(parsed.lines().size(), 2U);
    EXPECT_EQ(parsed.lines()[0].group, "Item7");
    EXPECT_EQ(parsed.lines()[0].name, "TEL");
    EXPECT_EQ(parsed.lines()[0].range.of(text), "Item7.Tel;TYPE=HOME:1\r\n 2\r\n");
    EXPECT_EQ(parsed.property(parsed.lines()[0]).fullName, "Item7.Tel");
    EXPECT_EQ(text.substr(parsed.endOfLines().value()), "END:VCARD\r\n");
}

TEST(CardLinesTests, LinesOfInnerCardsAreNotItsOwn) {
    const std::string text = card("AGENT:\r\nBEGIN:VCARD\r\nTEL:inner\r\nEND:VCARD\r\nTEL:outer\r\n");
    const CardLines parsed(text);
    EXPECT_EQ(parsed.property(*parsed.first("TEL")).value, "outer");
    EXPECT_EQ(shown("AGENT:BEGIN:VCARD\r\nTEL:inner\r\nEND:VCARD\r\nTEL:outer\r\n", "TEL"), "|outer");
}

TEST(CardLinesTests, Versions) {
    const auto version = [](const std::string& lines) { return CardLines(card(lines)).version(); };
    EXPECT_EQ(version("VERSION:2.1\r\n"), CardVersion::v21);
    EXPECT_EQ(version("VERSION: 4.0 \r\n"), CardVersion::v40);
    EXPECT_EQ(version("VERSION:3.0\r\n"), CardVersion::v30);
    EXPECT_EQ(version("FN:x\r\n"), CardVersion::v30);
    EXPECT_EQ(version("VERSION:5\r\n"), CardVersion::v30);
    EXPECT_EQ(version("FN:x\r\nversion:2.1\r\n"), CardVersion::v21) << "wherever it stands";
}

TEST(CardLinesTests, NoWholeCard) {
    for (const char* text :
         {"", "FN:x", "BEGIN:VCARD\nFN:x\n", "END:VCARD\n", "BEGIN:VCARD\nAGENT:\nBEGIN:VCARD\nEND:VCARD\n"})
        EXPECT_FALSE(CardLines(text).endOfLines()) << text;
}

TEST(CardLinesTests, LinesWaitingForTheirContinuationAreTold) {
    const std::string open = card("TEL;QUOTED-PRINTABLE:a=\r\n");
    EXPECT_TRUE(CardLines(open).lines()[0].isOpen);
    EXPECT_TRUE(CardLines(open).isOpenAtEnd());
    const std::string closed = card("TEL;QUOTED-PRINTABLE:a=\r\n\r\n");
    EXPECT_FALSE(CardLines(closed).lines()[0].isOpen);
    EXPECT_FALSE(CardLines(closed).isOpenAtEnd());
}

} // namespace
} // namespace vesk::vcard
