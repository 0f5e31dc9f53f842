#include "VeskPlatform/Linux/Vcard/CardValues.hpp"

#include <gmock/gmock.h>

namespace vesk::vcard {
namespace {

using testing::ElementsAre;

CardProperty property(const std::string& value, std::vector<CardParameter> parameters = {}) {
    return {"X", std::move(parameters), value};
}

CardProperty encoded(const std::string& value, const std::string& encoding, const std::string& characterSet) {
    return property(value, {{"ENCODING", encoding, ""}, {"CHARSET", characterSet, ""}});
}

TEST(CardValuesTests, EscapesOfTheVersions) {
    EXPECT_EQ(unescapedValue("a\\nb\\Nc\\,d\\;e\\\\f\\:g", CardVersion::v30), "a\nb\nc,d;e\\f:g");
    EXPECT_EQ(unescapedValue("a\\nb\\;c", CardVersion::v40), "a\nb;c");
    EXPECT_EQ(unescapedValue("a\\nb\\,c\\;d\\\\e", CardVersion::v21), "a\\nb\\,c;d\\\\e");
    EXPECT_EQ(unescapedValue("a\\xb\\", CardVersion::v30), "a\\xb\\") << "no escapes";
    EXPECT_EQ(unescapedValue("\\\\n", CardVersion::v30), "\\n");
}

TEST(CardValuesTests, SeparatorsThatAreEscapedDoNotSplit) {
    EXPECT_THAT(splitValue("a;b\\;c;;d\\\\;e", ';'), ElementsAre("a", "b\\;c", "", "d\\\\", "e"));
    EXPECT_THAT(splitValue("", ';'), ElementsAre(""));
    EXPECT_THAT(splitValue("a\\", ';'), ElementsAre("a\\"));
}

TEST(CardValuesTests, ComponentsOfEncodedValues) {
    const auto texts = [](const CardProperty& p) { return componentTexts(p, CardVersion::v21); };
    EXPECT_THAT(texts(encoded("M=C3=BCller;A=3Bb;=5C", "QUOTED-PRINTABLE", "UTF-8")),
                ElementsAre("Müller", "A;b", "\\"));
    EXPECT_THAT(texts(encoded("=93=63=92=86;=95\\\\;x", "QUOTED-PRINTABLE", "SHIFT_JIS"))[0], "田中");
    EXPECT_THAT(texts(encoded("=83=5C;x", "QUOTED-PRINTABLE", "SHIFT_JIS")), ElementsAre("ソ", "x"))
        << "its second byte is a backslash";
    EXPECT_THAT(texts(encoded("\x83\x5C;x", "8BIT", "SHIFT_JIS")), ElementsAre("ソ", "x"));
    EXPECT_THAT(texts(encoded("TcO8bGxlcjtB", "BASE64", "UTF-8")), ElementsAre("Müller", "A"));
    EXPECT_THAT(texts(encoded("TfxsbGVy", "b", "ISO-8859-1")), ElementsAre("Müller"));
    EXPECT_THAT(texts(encoded("a=0D=0Ab=0Dc=0Ad", "QUOTED-PRINTABLE", "")), ElementsAre("a\nb\nc\nd"));
    EXPECT_THAT(texts(property("M\xFC\xC3")), ElementsAre("M\xEF\xBF\xBD\xEF\xBF\xBD"));
    EXPECT_THAT(componentBytes(property("M\xFC;b"), CardVersion::v21), ElementsAre("M\xFC", "b"));
}

TEST(CardValuesTests, WholeTexts) {
    EXPECT_EQ(valueText(property("a;b\\,c\\nd"), CardVersion::v30), "a;b,c\nd");
    EXPECT_EQ(valueText(encoded("a=20b=3D", "quoted-printable", ""), CardVersion::v21), "a b=");
    EXPECT_EQ(valueText(encoded("M=FC", "QUOTED-PRINTABLE", ""), CardVersion::v21), "M\xEF\xBF\xBD");
    EXPECT_EQ(valueBytes(encoded("M=FC", "QUOTED-PRINTABLE", ""), CardVersion::v21), "M\xFC");
}

TEST(CardValuesTests, Lists) {
    EXPECT_THAT(listTexts(property("a, b\\,c,,d"), CardVersion::v30), ElementsAre("a", "b,c", "d"));
    EXPECT_THAT(listTexts(property(" a "), CardVersion::v40), ElementsAre(" a "));
    EXPECT_THAT(listTexts(property("a,b"), CardVersion::v21), ElementsAre("a,b"));
    EXPECT_THAT(listTexts(property("x;y;a,b"), CardVersion::v30, 2), ElementsAre("a", "b"));
    EXPECT_THAT(listTexts(property("x;y"), CardVersion::v30, 2), ElementsAre());
}

TEST(CardValuesTests, BytesInWords) {
    EXPECT_EQ(quotedPrintableDecoded("a=41=4a=zz=4="), "aAJ=zz=4=");
    EXPECT_EQ(percentDecoded("%2B49%20%zz%4"), "+49 %zz%4");
    EXPECT_EQ(base64Decoded("TW Fu\r\n"), "Man");
    EXPECT_EQ(base64Decoded("TWE="), "Ma");
    EXPECT_EQ(base64Decoded("T"), "");
    EXPECT_EQ(base64Decoded("-_+/"), "\xFB\xFF\xBF");
}

} // namespace
} // namespace vesk::vcard
