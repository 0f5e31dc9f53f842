#include "VeskPlatform/Linux/Vcard/CardWriting.hpp"

#include <gmock/gmock.h>

namespace vesk::vcard {
namespace {

struct PhoneCase {
    const char *label, *v21, *v30, *v40;
};

TEST(CardWritingTests, LabelsInTheWordsOfTheVersion) {
    const PhoneCase cases[] = {
        {contactLabel::mobile, "TEL;CELL:1\n", "TEL;TYPE=cell:1\n", "TEL;TYPE=cell:1\n"},
        {contactLabel::iPhone, "TEL;IPHONE;CELL:1\n", "TEL;TYPE=iphone,cell:1\n", "TEL;TYPE=iphone,cell:1\n"},
        {contactLabel::main, "TEL;MAIN:1\n", "TEL;TYPE=main:1\n", "TEL;TYPE=main:1\n"},
        {contactLabel::home, "TEL;HOME:1\n", "TEL;TYPE=home:1\n", "TEL;TYPE=home:1\n"},
        {contactLabel::work, "TEL;WORK:1\n", "TEL;TYPE=work:1\n", "TEL;TYPE=work:1\n"},
        {contactLabel::other, "TEL:1\n", "TEL:1\n", "TEL:1\n"},
        {"", "TEL:1\n", "TEL:1\n", "TEL:1\n"},
        {"a,b", "item4.TEL:1\nitem4.X-ABLabel:a,b\n", "item4.TEL:1\nitem4.X-ABLabel:a\\,b\n",
         "item4.TEL:1\nitem4.X-ABLabel:a\\,b\n"},
    };
    for (const PhoneCase& c : cases) {
        const LabeledValue phone{c.label, "1"};
        EXPECT_EQ(CardWriter(CardVersion::v21, "\n", 4).phone(phone), c.v21) << c.label;
        EXPECT_EQ(CardWriter(CardVersion::v30, "\n", 4).phone(phone), c.v30) << c.label;
        EXPECT_EQ(CardWriter(CardVersion::v40, "\n", 4).phone(phone), c.v40) << c.label;
    }
    EXPECT_EQ(CardWriter(CardVersion::v30, "\n", 1).phone({std::nullopt, "1"}), "TEL:1\n");
}

TEST(CardWritingTests, GroupsAreCountedOn) {
    CardWriter writer(CardVersion::v30, "\n", 7);
    EXPECT_EQ(writer.phone({"a", "1"}), "item7.TEL:1\nitem7.X-ABLabel:a\n");
    EXPECT_EQ(writer.email({"b", "2"}), "item8.EMAIL:2\nitem8.X-ABLabel:b\n");
}

TEST(CardWritingTests, Addresses) {
    const LabeledPostalAddress address{contactLabel::home, {"S;1\n2", "C", "T", "P", "L", "de"}};
    EXPECT_EQ(CardWriter(CardVersion::v30, "\n", 1).address(address),
              "item1.ADR;TYPE=home:;;S\\;1\\n2;C;T;P;L\nitem1.X-ABADR:de\n");
    EXPECT_EQ(CardWriter(CardVersion::v40, "\n", 1).address(address), "ADR;TYPE=home;CC=de:;;S\\;1\\n2;C;T;P;L\n");
    EXPECT_EQ(CardWriter(CardVersion::v21, "\n", 1).address(address),
              "item1.ADR;HOME;ENCODING=QUOTED-PRINTABLE:;;S=3B1=0D=0A2;C;T;P;L\nitem1.X-ABADR:de\n");
    EXPECT_EQ(CardWriter(CardVersion::v40, "\n", 1).address({"x", {"", "C", "", "", "", "d:\"^"}}),
              "item1.ADR;CC=\"d:^'^^\":;;;C;;;\nitem1.X-ABLabel:x\n");
}

TEST(CardWritingTests, BlankValuesAreLeftOut) {
    CardWriter writer(CardVersion::v30, "\n", 1);
    EXPECT_EQ(writer.phone({contactLabel::home, " \n"}), "");
    EXPECT_EQ(writer.email({"own", "\x01"}), "");
    EXPECT_EQ(writer.address({"own", {"", " ", "", "", "", "de"}}), "");
    EXPECT_EQ(writer.phone({"a", "1"}), "item1.TEL:1\nitem1.X-ABLabel:a\n") << "no group is used up";
}

TEST(CardWritingTests, PlainTextAndQuotedPrintable) {
    const CardWriter writer(CardVersion::v21, "\r\n", 1);
    EXPECT_EQ(writer.textLine("TITLE", "Head, of it"), "TITLE:Head, of it\r\n");
    EXPECT_EQ(writer.componentsLine("ORG", {"a;b", "c"}), "ORG:a\\;b;c\r\n");
    EXPECT_EQ(writer.textLine("TITLE", "ö:=;\\"),
              "TITLE;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:=C3=B6=3A=3D=3B=5C\r\n");
    EXPECT_EQ(writer.textLine("TITLE", "a "), "TITLE;ENCODING=QUOTED-PRINTABLE:a=20\r\n");
    EXPECT_EQ(writer.componentsLine("ORG", {"M\xFC", "b"}), "ORG;ENCODING=QUOTED-PRINTABLE:M=FC;b\r\n")
        << "bytes of no known character set";
    const std::string line = writer.textLine("TITLE", std::string(200, 'x'));
    EXPECT_EQ(line.substr(0, 38), "TITLE;ENCODING=QUOTED-PRINTABLE:xxxxxx");
    EXPECT_EQ(line.find("=\r\n"), 75U);
}

TEST(CardWritingTests, LongLinesOf30AreFolded) {
    const std::string line = CardWriter(CardVersion::v30, "\r\n", 1).textLine("TITLE", std::string(200, 'x'));
    EXPECT_EQ(line.find("\r\n "), 75U);
}

TEST(CardWritingTests, ValuesThatLookLikeUris) {
    EXPECT_EQ(CardWriter(CardVersion::v30, "\n", 1).phone({std::nullopt, "TEL:a%"}), "TEL:tel:TEL:a%25\n");
    EXPECT_EQ(CardWriter(CardVersion::v30, "\n", 1).email({std::nullopt, "mailto:a?b"}), "EMAIL:mailto:mailto:a%3Fb\n");
}

TEST(CardWritingTests, TextsAndTimes) {
    EXPECT_EQ(writableText("a\r\nb\tc\x01\x7F\xFF"), "a\nb\tc\xEF\xBF\xBD");
    EXPECT_TRUE(isWritableValue("a"));
    EXPECT_FALSE(isWritableValue("\x02 "));
    using namespace std::chrono;
    EXPECT_EQ(revisionText(Instant{sys_days{year{2026} / 4 / 26}} + hours(14) + minutes(3) + milliseconds(22'517)),
              "20260426T140322Z");
}

} // namespace
} // namespace vesk::vcard
