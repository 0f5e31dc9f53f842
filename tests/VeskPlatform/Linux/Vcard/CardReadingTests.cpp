#include "VeskPlatform/Linux/Vcard/CardReading.hpp"

#include <gmock/gmock.h>

namespace vesk::vcard {
namespace {

ReadCard readLines(const std::string& lines) {
    const std::optional<ReadCard> read = readCard("BEGIN:VCARD\r\n" + lines + "END:VCARD\r\n");
    return read.value_or(ReadCard{.uid = "no card", .isGroup = false, .contact = {}});
}

struct NameCase {
    const char *name, *lines;
    const char *given, *middle, *family;
};

TEST(CardReadingTests, Names) {
    const NameCase cases[] = {
        {"components", "N:Doe;Ann;Mary;Dr.;MD\r\n", "Ann", "Mary", "Doe"},
        {"several additional names", "N:Doe;Ann;Mary,Jane, Sue;;\r\n", "Ann", "Mary Jane Sue", "Doe"},
        {"an escaped comma", "N:Doe;Ann;Mary\\, Jane;;\r\n", "Ann", "Mary, Jane", "Doe"},
        {"few components", "N:Doe\r\n", "", "", "Doe"},
        {"escapes", "N:D\\;o\\\\e;A\\,n;;;\r\n", "A,n", "", "D;o\\e"},
        {"FN beside N", "FN:Nick\r\nN:Doe;Ann;;;\r\n", "Ann", "", "Doe"},
        {"FN without N", "FN:Ann Doe\r\n", "Ann Doe", "", ""},
        {"FN with an empty N", "N:;;;;\r\nFN:Ann Doe\r\n", "Ann Doe", "", ""},
        {"FN that only repeats the organization", "N:;;;;\r\nFN:Acme\r\nORG:Acme\r\n", "", "", ""},
        {"FN of an organization without N", "FN:Acme\r\nORG:Acme\r\n", "Acme", "", ""},
        {"FN that only repeats the nickname", "N:;;;;\r\nFN:Mac\r\nORG:Acme\r\nNICKNAME:Mac\r\n", "", "", ""},
        {"a prefix alone is a name", "N:;;;Dr.;\r\nFN:Ann\r\n", "", "", ""},
        {"neither", "TEL:1\r\n", "", "", ""},
        {"the first of two", "N:Doe;Ann\r\nN:Roe;Bea\r\n", "Ann", "", "Doe"},
        {"2.1", "VERSION:2.1\r\nN:Doe;Ann;Mary,Jane\r\n", "Ann", "Mary,Jane", "Doe"},
        {"2.1, escapes", "VERSION:2.1\r\nN:D\\;o\\e\\,;A\\nn\r\n", "A\\nn", "", "D;o\\e\\,"},
        {"quoted-printable",
         "VERSION:2.1\r\nN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:M=C3=BC=\r\nller;J=\r\n=C3=B6rg\r\n", "Jörg", "",
         "Müller"},
        {"not UTF-8", "N:M\xFCller;A\r\n", "A", "", "M\xEF\xBF\xBDller"},
        {"names in lower case", "n:Doe;Ann\r\n", "Ann", "", "Doe"},
    };
    for (const NameCase& c : cases) {
        const ContactCard contact = readLines(c.lines).contact;
        EXPECT_EQ(contact.givenName, c.given) << c.name;
        EXPECT_EQ(contact.middleName, c.middle) << c.name;
        EXPECT_EQ(contact.familyName, c.family) << c.name;
    }
}

TEST(CardReadingTests, EmploymentAndNickname) {
    const ContactCard contact =
        readLines("ORG:Acme\\, Inc.;Sales;Team 4\r\nTITLE:Head\\nof it\r\nTITLE:Other\r\nNICKNAME:Ann,Annie\r\n")
            .contact;
    EXPECT_EQ(contact.organizationName, "Acme, Inc.");
    EXPECT_EQ(contact.departmentName, "Sales");
    EXPECT_EQ(contact.jobTitle, "Head\nof it");
    EXPECT_EQ(contact.nickname, "Ann, Annie");
}

TEST(CardReadingTests, LabelsOfPhones) {
    struct Case {
        const char *line, *label;
    };
    const Case cases[] = {
        {"TEL:1", contactLabel::other},
        {"TEL;TYPE=CELL:1", contactLabel::mobile},
        {"TEL;TYPE=cell:1", contactLabel::mobile},
        {"TEL;type=IPHONE;type=CELL;type=VOICE:1", contactLabel::iPhone},
        {"TEL;TYPE=WORK,CELL:1", contactLabel::mobile},
        {"TEL;TYPE=\"work,home\":1", contactLabel::home},
        {"TEL;TYPE=work;TYPE=main:1", contactLabel::main},
        {"TEL;TYPE=voice, work :1", contactLabel::work},
        {"TEL;TYPE=FAX:1", contactLabel::other},
        {"TEL;HOME;VOICE:1", contactLabel::home},
        {"TEL;WORK;PREF:1", contactLabel::work},
        {"TEL;VALUE=HOME:1", contactLabel::other},
        {"a.TEL;TYPE=HOME:1\r\na.X-ABLabel:Ferienhaus", "Ferienhaus"},
        {"a.TEL;TYPE=HOME:1\r\nA.x-ablabel:_$!<HomeFAX>!$_", "_$!<HomeFAX>!$_"},
        {"a.X-ABLabel:_$!<Home>!$_\r\na.TEL:1", contactLabel::home},
        {"a.TEL;TYPE=HOME:1\r\nb.X-ABLabel:x", contactLabel::home},
        {"TEL;TYPE=HOME:1\r\nX-ABLabel:x", contactLabel::home},
        {"a.TEL;TYPE=HOME:1\r\na.X-ABLabel: ", contactLabel::home},
        {"a.TEL:1\r\na.X-ABLabel:x\\, y\r\na.X-ABLabel:z", "x, y"},
    };
    for (const Case& c : cases) {
        const ContactCard contact = readLines(std::string(c.line) + "\r\n").contact;
        EXPECT_EQ(contact.phoneNumbers, (std::vector<LabeledValue>{{c.label, "1"}})) << c.line;
    }
}

TEST(CardReadingTests, ValuesOfPhonesAndEmails) {
    struct Case {
        const char *line, *value;
    };
    const Case cases[] = {
        {"TEL:+49 (176) 12-3", "+49 (176) 12-3"},
        {"TEL;VALUE=uri;TYPE=\"voice,home\":tel:+49-176-123", "+49-176-123"},
        {"TEL;VALUE=URI:TEL:%2B49%20176", "+49 176"},
        {"TEL:tel:+1-555;ext=10", "+1-555;ext=10"},
        {"TEL:a%20b", "a%20b"},
        {"TEL: 1 ", " 1 "},
        {"EMAIL:a@example.org", "a@example.org"},
        {"EMAIL;INTERNET:a@example.org", "a@example.org"},
        {"EMAIL:mailto:a%2Bb@example.org", "a+b@example.org"},
        {"EMAIL:MAILTO:a@example.org?subject=hi", "a@example.org"},
        {"EMAIL:a?b@example.org", "a?b@example.org"},
        {"EMAIL:tel:1", "tel:1"},
    };
    for (const Case& c : cases) {
        const ContactCard contact = readLines(std::string(c.line) + "\r\n").contact;
        const auto& values = c.line[0] == 'T' ? contact.phoneNumbers : contact.emailAddresses;
        ASSERT_EQ(values.size(), 1U) << c.line;
        EXPECT_EQ(values[0].value, c.value) << c.line;
    }
    const ContactCard blank = readLines("TEL;HOME:\r\nTEL: \r\nTEL\r\nEMAIL:\r\nADR:;;;;;;\r\nADR: ; ;\r\n").contact;
    EXPECT_EQ(blank, ContactCard{});
}

TEST(CardReadingTests, Addresses) {
    struct Case {
        const char *name, *lines;
        PostalAddress address;
    };
    const Case cases[] = {
        {"all of it",
         "ADR;TYPE=HOME:;;Street 1;City;State;12345;Land\r\n",
         {"Street 1", "City", "State", "12345", "Land", ""}},
        {"box and extension",
         "ADR;TYPE=HOME:Box 7;Floor 2;Street 1;City\r\n",
         {"Street 1\nFloor 2\nBox 7", "City", "", "", "", ""}},
        {"box alone", "ADR;TYPE=HOME:Box 7;;;City;;;\r\n", {"Box 7", "City", "", "", "", ""}},
        {"street of two lines", "ADR;TYPE=HOME:;;a\\nb\\, c;;;;\r\n", {"a\nb, c", "", "", "", "", ""}},
        {"bare commas", "ADR;TYPE=HOME:;;a, b;;;;\r\n", {"a, b", "", "", "", "", ""}},
        {"code of the group", "x.ADR;TYPE=HOME:;;;City\r\nX.X-ABADR:de\r\n", {"", "City", "", "", "", "de"}},
        {"CC", "VERSION:4.0\r\nADR;CC=DE;TYPE=home:;;;City\r\n", {"", "City", "", "", "", "DE"}},
        {"label with colons", "VERSION:4.0\r\nADR;LABEL=\"a:b;c\";TYPE=home:;;;City\r\n", {"", "City", "", "", "", ""}},
        {"too many", "ADR;TYPE=HOME:;;;City;;;;;x;y\r\n", {"", "City", "", "", "", ""}},
        {"2.1",
         "VERSION:2.1\r\nADR;HOME;ENCODING=QUOTED-PRINTABLE:;;a=0D=0Ab;C=C3=B6;;;\r\n",
         {"a\nb", "Cö", "", "", "", ""}},
    };
    for (const Case& c : cases) {
        const std::vector<LabeledPostalAddress> expected{{contactLabel::home, c.address}};
        EXPECT_EQ(readLines(c.lines).contact.postalAddresses, expected) << c.name;
    }
}

TEST(CardReadingTests, Uids) {
    EXPECT_EQ(readLines("UID:a-b\r\n").uid, "a-b");
    EXPECT_EQ(readLines("UID:first\r\nUID:second\r\n").uid, "first");
    EXPECT_EQ(readLines("UID:urn:uuid:4fbe8971\r\n").uid, "urn:uuid:4fbe8971");
    EXPECT_EQ(readLines("UID: a \r\n").uid, "a");
    EXPECT_EQ(readLines("UID: \r\n").uid, std::nullopt);
    EXPECT_EQ(readLines("FN:x\r\n").uid, std::nullopt);
    EXPECT_EQ(readLines("FN:x\r\n").contact.identifier, "");
}

TEST(CardReadingTests, OrderIsKept) {
    const ContactCard contact = readLines("TEL:2\r\nEMAIL:b\r\nTEL:1\r\nEMAIL:a\r\n").contact;
    EXPECT_EQ(contact.phoneNumbers[0].value + contact.phoneNumbers[1].value, "21");
    EXPECT_EQ(contact.emailAddresses[0].value + contact.emailAddresses[1].value, "ba");
}

TEST(CardReadingTests, BadInput) {
    for (const char* text : {"", "BEGIN:VCARD\nFN:x\n", "FN:x\n", "END:VCARD\n", "\0\0"})
        EXPECT_FALSE(readCard(text).has_value()) << text;
    const ContactCard odd = readLines("garbage\r\n:\r\n;:x\r\n.TEL:1\r\nTEL;TYPE=\"HOME:2\r\n\r\n\r\n").contact;
    EXPECT_EQ(odd.phoneNumbers, (std::vector<LabeledValue>{{contactLabel::other, "1"}, {contactLabel::home, "2"}}));
    EXPECT_EQ(readLines(std::string("FN:a\0b\r\n", 8)).contact.givenName, std::string("a\0b", 3));
}

TEST(CardReadingTests, TenThousandNumbers) {
    std::string lines;
    for (int i = 0; i < 10'000; ++i) {
        const std::string group = "item" + std::to_string(i);
        lines += group + ".TEL:" + std::to_string(i) + "\r\n" + group + ".X-ABLabel:" + std::to_string(i) + "\r\n";
    }
    const ContactCard contact = readLines(lines).contact;
    ASSERT_EQ(contact.phoneNumbers.size(), 10'000U);
    EXPECT_EQ(contact.phoneNumbers[9'999], (LabeledValue{"9999", "9999"}));
}

TEST(CardReadingTests, LinesOfTenMegabytes) {
    const std::string long_(std::size_t{10} << 20, '=');
    for (const std::string head :
         {"TEL:", "NOTE:", "TEL;", "", "TEL;ENCODING=QUOTED-PRINTABLE:", "PHOTO;BASE64:", "TEL;X=\""}) {
        const std::string folded = "BEGIN:VCARD\r\n" + head + long_ + "\r\nN:Doe;Ann\r\nFN:x\r\nEND:VCARD\r\n";
        EXPECT_TRUE(readCard(folded).has_value()) << head;
    }
    std::string softBreaks = "NOTE;QUOTED-PRINTABLE:";
    for (int i = 0; i < 500'000; ++i) softBreaks += "=\r";
    EXPECT_EQ(readLines(softBreaks + "\rFN:x\r").contact.givenName, "x");
    std::string noColon = "NOTE=\n";
    for (int i = 0; i < 500'000; ++i) noColon += " =\n";
    EXPECT_EQ(readLines(noColon + "FN:x\r\n").contact.givenName, "x");
}

} // namespace
} // namespace vesk::vcard
