// Cards as phones and address-book programs write them, whole.

#include "VeskPlatform/Linux/Vcard/CardReading.hpp"

#include <gmock/gmock.h>

namespace vesk::vcard {
namespace {

const LabeledValue* find(const std::vector<LabeledValue>& values, const std::string& value) {
    for (const LabeledValue& each : values)
        if (each.value == value) return &each;
    return nullptr;
}

void expectValue(const std::vector<LabeledValue>& values, const std::string& value, const std::string& label) {
    const LabeledValue* found = find(values, value);
    ASSERT_NE(found, nullptr) << value;
    EXPECT_EQ(found->label, label) << value;
}

std::string foldedPhoto(const std::string& head, const std::string& fold) {
    std::string text = head;
    for (int i = 0; i < 200; ++i) text += std::string(74, 'A') + "\r\n" + fold;
    return text + "AAA=\r\n";
}

TEST(PhoneCardsTests, ExportOfAPhoneWithGroupsAndAPhoto) {
    const std::string text =
        "BEGIN:VCARD\r\nVERSION:3.0\r\nPRODID:-//Phone Inc.//Phone OS 17.1//EN\r\n"
        "N:Schmidt;Anna;Maria;;\r\nFN:Anna Maria Schmidt\r\nORG:Beispiel GmbH;Einkauf;\r\nTITLE:Leiterin\r\n"
        "item1.EMAIL;type=INTERNET;type=pref:anna@example.org\r\nitem1.X-ABLabel:Verein\r\n"
        "EMAIL;type=INTERNET;type=WORK:anna@example.com\r\n"
        "TEL;type=IPHONE;type=CELL;type=VOICE;type=pref:+49 176 1234567\r\n"
        "TEL;type=HOME;type=VOICE:030 1234\r\nitem2.TEL:030 99\r\nitem2.X-ABLabel:_$!<Other>!$_\r\n"
        "item3.ADR;type=HOME;type=pref:;;Hauptstraße 5\\nHinterhaus;Berlin;;10115;Deutschland\r\n"
        "item3.X-ABADR:de\r\n"
        + foldedPhoto("PHOTO;ENCODING=b;TYPE=JPEG:/9j/4", " ") + "UID:5C2F7E1A-0001\r\nEND:VCARD\r\n";
    const std::optional<ReadCard> read = readCard(text);
    ASSERT_TRUE(read.has_value());
    const ContactCard& contact = read->contact;
    EXPECT_EQ(read->uid, "5C2F7E1A-0001");
    EXPECT_EQ(contact.givenName + "/" + contact.middleName + "/" + contact.familyName, "Anna/Maria/Schmidt");
    EXPECT_EQ(contact.organizationName + "/" + contact.departmentName, "Beispiel GmbH/Einkauf");
    expectValue(contact.emailAddresses, "anna@example.org", "Verein");
    expectValue(contact.emailAddresses, "anna@example.com", contactLabel::work);
    expectValue(contact.phoneNumbers, "+49 176 1234567", contactLabel::iPhone);
    expectValue(contact.phoneNumbers, "030 1234", contactLabel::home);
    expectValue(contact.phoneNumbers, "030 99", contactLabel::other);
    const std::vector<LabeledPostalAddress> addresses{
        {contactLabel::home, {"Hauptstraße 5\nHinterhaus", "Berlin", "", "10115", "Deutschland", "de"}}};
    EXPECT_EQ(contact.postalAddresses, addresses);
}

TEST(PhoneCardsTests, ExportOfAPhoneIn21) {
    const std::string text =
        "BEGIN:VCARD\r\nVERSION:2.1\r\n"
        "N;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:=4D=C3=BC=6C=6C=65=72;=4A=C3=B6=72=67;;;\r\n"
        "FN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:=4A=C3=B6=72=67=20=4D=C3=BC=6C=6C=65=72\r\n"
        "TEL;CELL;PREF:0176 1\r\nTEL;WORK;FAX:030 2\r\nTEL;X-Ferienhaus:030 3\r\nEMAIL;HOME:j@example.org\r\n"
        "ADR;HOME;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:;;=48=61=75=70=74=73=74=72=61=C3=9F=\r\n"
        "=65=20=35;=4B=C3=B6=6C=6E;;50667;\r\n"
        "ORG:Beispiel\r\n"
        + foldedPhoto("PHOTO;ENCODING=BASE64;JPEG:/9j/4", " ") + "\r\nBDAY:1980-01-01\r\nEND:VCARD\r\n";
    const std::optional<ReadCard> read = readCard(text);
    ASSERT_TRUE(read.has_value());
    const ContactCard& contact = read->contact;
    EXPECT_EQ(read->uid, std::nullopt);
    EXPECT_EQ(contact.givenName + " " + contact.familyName, "Jörg Müller");
    EXPECT_EQ(contact.organizationName, "Beispiel");
    expectValue(contact.phoneNumbers, "0176 1", contactLabel::mobile);
    expectValue(contact.phoneNumbers, "030 2", contactLabel::work);
    expectValue(contact.phoneNumbers, "030 3", contactLabel::other);
    const std::vector<LabeledPostalAddress> addresses{
        {contactLabel::home, {"Hauptstraße 5", "Köln", "", "50667", "", ""}}};
    EXPECT_EQ(contact.postalAddresses, addresses);
}

TEST(PhoneCardsTests, OldPhoneInAnOldCharacterSet) {
    const std::optional<ReadCard> read = readCard(
        "BEGIN:VCARD\nVERSION:2.1\nN;ENCODING=8BIT;CHARSET=ISO-8859-1:M\xFCller;J\xF6rg\nTEL;VOICE;CELL:+491761\n"
        "TEL;VOICE;WORK:+49302\nEMAIL;INTERNET:j@example.org\nX-CLASS:private\nREV:20040106T153000Z\nEND:VCARD\n");
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->contact.givenName + " " + read->contact.familyName, "Jörg Müller");
    expectValue(read->contact.phoneNumbers, "+491761", contactLabel::mobile);
    expectValue(read->contact.phoneNumbers, "+49302", contactLabel::work);
}

TEST(PhoneCardsTests, ServerIn40) {
    const std::optional<ReadCard> read = readCard(
        "BEGIN:VCARD\r\nVERSION:4.0\r\nPRODID:-//Server//Contacts 5//EN\r\nUID:urn:uuid:11aa-22bb\r\nFN:Ann Doe\r\n"
        "N:Doe;Ann;;;\r\nKIND:individual\r\nTEL;VALUE=uri;PREF=1;TYPE=\"voice,cell\":tel:+49-176-12\r\n"
        "TEL;TYPE=\"work\",\"voice\":030 1\r\nEMAIL;TYPE=home;PREF=1:ann@example.org\r\n"
        "ADR;TYPE=home;CC=GB;LABEL=\"1 Street^nLondon\":;;1 Street;London;;SW1A 2AA;United King\r\n dom\r\n"
        "ORG:Acme;R\\;D;Lab\r\nNICKNAME:Annie\r\nREV;VALUE=timestamp:20240101T000000Z\r\nEND:VCARD\r\n");
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->uid, "urn:uuid:11aa-22bb");
    expectValue(read->contact.phoneNumbers, "+49-176-12", contactLabel::mobile);
    expectValue(read->contact.phoneNumbers, "030 1", contactLabel::work);
    EXPECT_EQ(read->contact.departmentName, "R;D");
    const std::vector<LabeledPostalAddress> addresses{
        {contactLabel::home, {"1 Street", "London", "", "SW1A 2AA", "United Kingdom", "GB"}}};
    EXPECT_EQ(read->contact.postalAddresses, addresses);
}

TEST(PhoneCardsTests, DesktopProgramsIn30) {
    const std::optional<ReadCard> read = readCard(
        "BEGIN:VCARD\r\nVERSION:3.0\r\nADR;TYPE=home,pref:Postfach 3;;Weg "
        "1;Ulm;;89073;Germany\r\nCATEGORIES:Freunde\r\n"
        "EMAIL:a@example.org\r\nEMAIL;TYPE=work:b@example.org\r\nFN:Doe\\, "
        "Ann\r\nN:Doe;Ann;;;\r\nTEL;TYPE=\"CELL\":1\r\n"
        "NOTE:line 1\\nTEL:9\r\nX-KADDRESSBOOK-X-Profession:x\r\nX-MOZILLA-HTML:FALSE\r\nUID:zz\r\nEND:VCARD\r\n");
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->contact.phoneNumbers, (std::vector<LabeledValue>{{contactLabel::mobile, "1"}}));
    EXPECT_EQ(read->contact.postalAddresses.at(0).address.street, "Weg 1\nPostfach 3");
    expectValue(read->contact.emailAddresses, "a@example.org", contactLabel::other);
}

} // namespace
} // namespace vesk::vcard
