#include "VeskPlatform/Linux/Vcard/CardEditing.hpp"

#include "VeskPlatform/Linux/Vcard/CardReading.hpp"
#include "VeskPlatform/Linux/Vcard/CardScanner.hpp"

#include <functional>
#include <gmock/gmock.h>

namespace vesk::vcard {
namespace {

const Instant now{std::chrono::sys_days{std::chrono::year{2026} / 4 / 26}};

ContactCard contactOf(const std::string& card) { return readCard(card).value_or(ReadCard{}).contact; }

std::string edited(const std::string& card, const std::function<void(ContactCard&)>& change) {
    const ContactCard base = contactOf(card);
    ContactCard wanted = base;
    change(wanted);
    return editedCardText(card, base, wanted, now);
}

struct EditCase {
    const char* name;
    std::string before;
    std::function<void(ContactCard&)> change;
    std::string after;
};

void check(const EditCase& c) {
    const std::string frame[] = {"BEGIN:VCARD\n", "END:VCARD\n"};
    EXPECT_EQ(edited(frame[0] + c.before + frame[1], c.change), frame[0] + c.after + frame[1]) << c.name;
}

void setOrganization(ContactCard& contact) { contact.organizationName = "N;w"; }
void setDepartment(ContactCard& contact) { contact.departmentName = "Dü"; }
void setTitle(ContactCard& contact) { contact.jobTitle = "Head"; }
void addPhone(ContactCard& contact) { contact.phoneNumbers.push_back({contactLabel::home, "9"}); }

TEST(CardEditingTests, EmploymentInItsPlace) {
    const std::string v21 = "VERSION:2.1\n";
    const EditCase cases[] = {
        {"name", "ORG:a;b\nX:1\n", setOrganization, "ORG:N\\;w;b\nX:1\n"},
        {"department", "ORG:a;b;c\\,d,e\nX:1\n", setDepartment, "ORG:a;Dü;c\\,d,e\nX:1\n"},
        {"department where there was none", "ORG:a\\;x\n", setDepartment, "ORG:a\\;x;Dü\n"},
        {"both missing", "X:1\n", setOrganization, "X:1\nORG:N\\;w\n"},
        {"department alone", "X:1\n", setDepartment, "X:1\nORG:;Dü\n"},
        {"parameters stay", "g.org;X-a=\"b;c\":a\n", setOrganization, "g.org;X-a=\"b;c\":N\\;w\n"},
        {"folded", "ORG:a\n b;c\n d\n", setOrganization, "ORG:N\\;w;cd\n"},
        {"the first of two", "ORG:a\nORG:b\n", setOrganization, "ORG:N\\;w\nORG:b\n"},
        {"a stray backslash", "ORG:a\\\n", setDepartment, "ORG:a\\\\;Dü\n"},
        {"quoted-printable in 3.0", "ORG;QUOTED-PRINTABLE:=41;b\n", setDepartment, "ORG:A;Dü\n"},
        {"control characters of others stay", "ORG;BASE64:QQFC;b\n", setDepartment,
         "ORG:A\x01"
         "B;Dü\n"},
        {"title", "TITLE:a\nTITLE:b\n", setTitle, "TITLE:Head\nTITLE:b\n"},
        {"a parameter without its second quotation mark", "TITLE;A=1;X=\"b:a\n", setTitle, "TITLE;A=1:Head\n"},
        {"title missing", "X:1\n", setTitle, "X:1\nTITLE:Head\n"},
        {"2.1, plain", v21 + "ORG:a;b\n", setOrganization, v21 + "ORG:N\\;w;b\n"},
        {"2.1, not plain", v21 + "ORG;X=1:a;b;c\n", setDepartment,
         v21 + "ORG;X=1;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:a;D=C3=BC;c\n"},
        {"2.1, another character set", v21 + "ORG;CHARSET=ISO-8859-1:\xFC;b\n", setDepartment,
         v21 + "ORG;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:=C3=BC;D=C3=BC\n"},
        {"2.1, bytes of no character set", v21 + "ORG:\xFC;b\n", setDepartment,
         v21 + "ORG;ENCODING=QUOTED-PRINTABLE:=FC;D=C3=BC\n"},
        {"taken away", "TITLE:a\n", [](ContactCard& contact) { contact.jobTitle.clear(); }, "TITLE:\n"},
    };
    for (const EditCase& c : cases) check(c);
}

TEST(CardEditingTests, EmploymentThatCannotBeWrittenTakesNothingAway) {
    const auto setAll = [](ContactCard& contact) {
        contact.organizationName = contact.departmentName = contact.jobTitle = "\x01 ";
    };
    check({"all of it", "TITLE:a\nORG:a;b\n", setAll, "TITLE:a\nORG:a;b\n"});
    check({"where there was none", "X:1\n", setAll, "X:1\n"});
}

TEST(CardEditingTests, ValuesBehindThoseOfTheirKind) {
    const auto addAll = [](ContactCard& contact) {
        addPhone(contact);
        contact.phoneNumbers.push_back({"Own", "8"});
        contact.emailAddresses.push_back({contactLabel::work, "e"});
        contact.postalAddresses.push_back({contactLabel::home, {"s", "", "", "", "", ""}});
    };
    const EditCase cases[] = {
        {"behind the last", "TEL:1\nX:1\nTEL:2\n 3\nX:2\n", addPhone, "TEL:1\nX:1\nTEL:2\n 3\nTEL;TYPE=home:9\nX:2\n"},
        {"before the end", "X:1\n", addPhone, "X:1\nTEL;TYPE=home:9\n"},
        {"all kinds", "item3.TEL:1\nitem3.X-ABLabel:x\nITEM9.URL:y\n", addAll,
         "item3.TEL:1\nTEL;TYPE=home:9\nitem10.TEL:8\nitem10.X-ABLabel:Own\nitem3.X-ABLabel:x\nITEM9.URL:y\n"
         "EMAIL;TYPE=work:e\nADR;TYPE=home:;;s;;;;\n"},
        {"blank ones are left out", "X:1\n",
         [](ContactCard& contact) {
             contact.phoneNumbers.push_back({"a", " "});
         },
         "X:1\n"},
        {"behind the number of an agent", "AGENT:\nBEGIN:VCARD\nTEL:1\nEND:VCARD\n", addPhone,
         "AGENT:\nBEGIN:VCARD\nTEL:1\nEND:VCARD\nTEL;TYPE=home:9\n"},
        {"behind a soft line break with nothing behind it", "TEL;QUOTED-PRINTABLE:1=\n", addPhone,
         "TEL;QUOTED-PRINTABLE:1=\n\nTEL;TYPE=home:9\n"},
        {"behind one that ends in a bare CR", "TEL;QUOTED-PRINTABLE:1=\r", addPhone,
         "TEL;QUOTED-PRINTABLE:1=\r\n\nTEL;TYPE=home:9\n"},
        {"behind another property like that", "NOTE;QUOTED-PRINTABLE:1=\n", addPhone,
         "NOTE;QUOTED-PRINTABLE:1=\n\nTEL;TYPE=home:9\n"},
    };
    for (const EditCase& c : cases) check(c);
}

TEST(CardEditingTests, RevisionWhereThereIsOne) {
    const EditCase cases[] = {
        {"set", "REV;VALUE=date:2020-01-01\nX:1\n", setTitle, "REV:20260426T000000Z\nX:1\nTITLE:Head\n"},
        {"not without a change", "REV:2020-01-01\n", [](ContactCard&) {}, "REV:2020-01-01\n"},
        {"beside another edit", "TEL:1\nREV:2020-01-01\n", addPhone, "TEL:1\nTEL;TYPE=home:9\nREV:20260426T000000Z\n"},
    };
    for (const EditCase& c : cases) check(c);
}

TEST(CardEditingTests, AllElseStaysByteForByte) {
    const std::string odd =
        "begin:vcard\r\nversion:3.0\r\n\r\nX-ODD;a=\"b\": \x01\xFF\r\n\t folded\r\nPHOTO;ENCODING=b:AAAA\r\n"
        " AAA=\r\nno colon\r\nNOTE:x\\n\r\nend:vcard\r\n";
    EXPECT_EQ(edited(odd, [](ContactCard&) {}), odd);
    std::string expected = odd;
    expected.insert(expected.find("end:vcard"), "TEL;TYPE=home:9\r\n");
    EXPECT_EQ(edited(odd, addPhone), expected);
    EXPECT_EQ(edited("no card", addPhone), "no card");
}

TEST(CardEditingTests, LineEndsAreTheCardsOwn) {
    for (const std::string lineEnd : {"\n", "\r\n", "\r"}) {
        const std::string begin = "BEGIN:VCARD" + lineEnd + "FN:x" + lineEnd, end = "END:VCARD" + lineEnd;
        EXPECT_EQ(edited(begin + end, addPhone), begin + "TEL;TYPE=home:9" + lineEnd + end);
    }
    EXPECT_EQ(edited("BEGIN:VCARD\rTEL:1\n\n x\rEND:VCARD\r", addPhone),
              "BEGIN:VCARD\rTEL:1\nTEL;TYPE=home:9\r\n\n x\rEND:VCARD\r")
        << "an empty line stays one";
    EXPECT_EQ(edited("BEGIN:VCARD\nEND:VCARD", addPhone), "BEGIN:VCARD\nTEL;TYPE=home:9\nEND:VCARD");
}

/// Texts that a card's syntax could be hurt by.
std::vector<std::string> nastyTexts() {
    std::string long_, folded;
    for (int i = 0; i < 2'000; ++i) long_ += "x";
    for (int i = 0; i < 700; ++i) folded += "\xF0\x9F\x91\xA9\xE2\x80\x8D\xC3\xA4\x65\xCC\x81 ";
    return {"plain",
            "a;b,c\\d:e\"f",
            "line\nbreak",
            "\n\nx\n",
            " leading",
            "trailing ",
            "\ttab\t",
            "\\",
            "\\n",
            "\\;",
            "a\\\\;b",
            "=",
            "a=",
            "=41=3D",
            "a=0D=0A",
            "%41?%",
            "tel:1",
            "TEL:%25",
            "mailto:x?y",
            "^n^^'\"",
            "Mu\xCC\x88ller",
            "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7",
            "田中",
            "END:VCARD",
            "a\nEND:VCARD\nb",
            "BEGIN:VCARD",
            "{}[]<>",
            "QUOTED-PRINTABLE",
            "\xEF\xBB\xBF",
            "\xC2\x85",
            "x\xE2\x80\xA8y",
            "_$!<School>!$_",
            long_,
            folded,
            std::string(76, '\\')};
}

TEST(CardEditingTests, WhatIsAppendedReadsBack) {
    for (const char* version : {"2.1", "3.0", "4.0"})
        for (const char* lineEnd : {"\n", "\r\n", "\r"})
            for (const std::string& text : nastyTexts()) {
                const std::string end = lineEnd;
                const std::string card =
                    "BEGIN:VCARD" + end + "VERSION:" + version + end + "N:Doe;Ann" + end + "END:VCARD" + end;
                ContactCard wanted = contactOf(card);
                wanted.organizationName = wanted.jobTitle = text;
                wanted.departmentName = text + "2";
                wanted.phoneNumbers = {{text + "l", text + "1"}, {contactLabel::iPhone, text + "."}};
                wanted.emailAddresses = {{contactLabel::other, text + "1"}, {text + "l", text + "x"}};
                wanted.postalAddresses = {{text + "l", {text, text, text, text, text + "x", text}}};
                const std::string after = editedCardText(card, contactOf(card), wanted, now);
                EXPECT_EQ(scanCards(after).cards.size(), 1U);
                EXPECT_EQ(contactOf(after), wanted) << version << "\n" << after;
            }
}

TEST(CardEditingTests, NewCardsReadBack) {
    for (const std::string& text : nastyTexts()) {
        ContactCard contact;
        contact.givenName = text + "g";
        contact.middleName = contact.familyName = contact.departmentName = contact.organizationName = text;
        contact.nickname = contact.jobTitle = text + "n";
        contact.phoneNumbers = {{text + "l", text + "1"}, {contactLabel::main, text + "2"}};
        contact.emailAddresses = {{contactLabel::home, text + "3"}};
        contact.postalAddresses = {{contactLabel::work, {text, "c", text, text, "", "de"}},
                                   {"own", {"", text + "c", "", "", "", ""}}};
        const std::string card = newCardText(contact, "u-1", now);
        const std::optional<ReadCard> read = readCard(card);
        ASSERT_TRUE(read.has_value()) << card;
        EXPECT_EQ(read->contact, contact) << card;
        EXPECT_EQ(read->uid, "u-1");
    }
}

TEST(CardEditingTests, NewCardIsWrittenInFull) {
    ContactCard contact;
    contact.givenName = "Anna Maria";
    contact.familyName = "Schmidt";
    contact.organizationName = "Acme, Inc.";
    contact.departmentName = "Sales";
    contact.jobTitle = "Head";
    contact.phoneNumbers = {{contactLabel::mobile, "+49 1"}, {"Ferienhaus", "2"}};
    contact.emailAddresses = {{contactLabel::work, "a@example.org"}};
    contact.postalAddresses = {{contactLabel::home, {"Weg 1", "Ulm", "", "89073", "Germany", "de"}}};
    EXPECT_EQ(
        newCardText(contact, "u-1", now),
        "BEGIN:VCARD\r\nVERSION:3.0\r\nPRODID:-//Vesk//VeskShellCore//EN\r\nUID:u-1\r\nN:Schmidt;Anna Maria;;;\r\n"
        "FN:Anna Maria Schmidt\r\nORG:Acme\\, Inc.;Sales\r\nTITLE:Head\r\nTEL;TYPE=cell:+49 1\r\nitem1.TEL:2\r\n"
        "item1.X-ABLabel:Ferienhaus\r\nEMAIL;TYPE=work:a@example.org\r\nitem2.ADR;TYPE=home:;;Weg "
        "1;Ulm;;89073;Germany\r\n"
        "item2.X-ABADR:de\r\nREV:20260426T000000Z\r\nEND:VCARD\r\n");
}

TEST(CardEditingTests, FormattedNameOfANewCard) {
    struct Case {
        const char* name;
        ContactCard contact;
        const char* line;
    };
    Case cases[] = {{"all", {}, "\r\nFN:Ann Mary Doe\r\n"},
                    {"nickname", {}, "\r\nFN:Annie\r\n"},
                    {"organization", {}, "\r\nFN:Acme\r\n"},
                    {"nothing", {}, "\r\nFN:Unnamed Contact\r\n"}};
    cases[0].contact.givenName = " Ann ";
    cases[0].contact.middleName = "Mary";
    cases[0].contact.familyName = "Doe";
    cases[1].contact.nickname = cases[0].contact.nickname = "Annie";
    cases[2].contact.organizationName = cases[1].contact.organizationName = "Acme";
    for (const Case& c : cases) {
        const std::string card = newCardText(c.contact, "u", now);
        EXPECT_NE(card.find(c.line), std::string::npos) << c.name << "\n" << card;
        EXPECT_EQ(contactOf(card), c.contact) << c.name;
    }
}

TEST(CardEditingTests, ControlCharactersAreDropped) {
    ContactCard contact;
    contact.givenName = std::string("A\0\x01n\r\nn", 7);
    EXPECT_EQ(contactOf(newCardText(contact, "u", now)).givenName, "An\nn");
}

} // namespace
} // namespace vesk::vcard
