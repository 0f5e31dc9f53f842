#include "VeskShellCore/ContactMatching.hpp"

#include "tests/fakes/FakeContactStore.hpp"

#include <gtest/gtest.h>

namespace vesk::VeskContactsOperations {
namespace {

ContactCard named(const char* given, const char* middle, const char* family) {
    ContactCard card;
    card.givenName = given;
    card.middleName = middle;
    card.familyName = family;
    return card;
}

bool finds(const std::string& query, const ContactCard& contact, const char* locale = "en_US") {
    const test::FakeContactStore store;
    const TextFolding folding(locale);
    return ContactMatcher(store, folding, query).contactMatches(contact);
}

bool findsNumber(const std::string& query, const std::string& number) {
    ContactCard card;
    card.phoneNumbers = {{std::nullopt, number}};
    return finds(query, card);
}

TEST(DisplayNames, JoinWhatIsThere) {
    EXPECT_EQ(veskContactDisplayName(named(" Anna ", "Maria", "Schmidt\n")), "Anna Maria Schmidt");
    EXPECT_EQ(veskContactDisplayName(named("Anna", " ", "Schmidt")), "Anna Schmidt");
    EXPECT_EQ(veskContactDisplayName(named("", "", "Schmidt")), "Schmidt");
}

TEST(DisplayNames, FallBackToNicknameThenOrganization) {
    ContactCard card = named(" ", "", "");
    EXPECT_EQ(veskContactDisplayName(card), "Unnamed Contact");
    card.organizationName = " ACME ";
    EXPECT_EQ(veskContactDisplayName(card), "ACME");
    card.nickname = " Bo ";
    EXPECT_EQ(veskContactDisplayName(card), "Bo");
}

TEST(ContactMatching, LooksAtNamesAndEmployment) {
    ContactCard card = named("Anna", "Maria", "Schmidt");
    card.nickname = "Annie";
    card.organizationName = "Blue Ltd";
    card.jobTitle = "Gardener";
    card.departmentName = "Roses";
    for (const char* query : {"anna maria", "SCHMIDT", "annie", "blue", "garden", "ROSES", " anna "})
        EXPECT_TRUE(finds(query, card)) << query;
    EXPECT_FALSE(finds("maria anna", card));
    EXPECT_FALSE(finds("", card));
    EXPECT_FALSE(finds(" \n", card));
}

TEST(ContactMatching, IgnoresCaseAndDiacriticsBothWays) {
    EXPECT_TRUE(finds("muller", named("", "", "M\u00fcller")));
    EXPECT_TRUE(finds("M\u00dcLLER", named("", "", "Muller")));
    EXPECT_TRUE(finds("strasse", named("Stra\u00dfe", "", "")));
    EXPECT_TRUE(finds("\u0131sparta", named("ISPARTA", "", ""), "tr_TR"));
    EXPECT_FALSE(finds("isparta", named("ISPARTA", "", ""), "tr_TR"));
}

TEST(ContactMatching, FindsTheUnnamedByThatName) { EXPECT_TRUE(finds("unnamed", ContactCard{})); }

TEST(ContactMatching, LooksAtEmailAddresses) {
    ContactCard card;
    card.emailAddresses = {{std::nullopt, "first@example.com"}, {std::nullopt, "Dana@Example.org"}};
    EXPECT_TRUE(finds("dana@", card));
    EXPECT_FALSE(finds("dana@example.com", card));
}

TEST(ContactMatching, ComparesNumbersAsTextAndByTheirDigits) {
    struct Case {
        const char* query;
        const char* number;
        bool found;
    };
    const Case cases[] = {
        {"1761", "+49 (176) 12", true},
        {"49176", "+49 (176) 12", true},
        {"176/12", "+49 (176) 12", true},
        {"+49 176 123", "0176 123 45", false},
        {"0176 123", "0176-12345", true},
        {"+", "+49 176", true},
        {"+", "0176", false},
        {"(176)", "+49 (176) 12", true},
        {"ext", "0176 EXT 5", true},
        {"call 0176", "0176 12", true},
        {"\u0661\u0667", "\u0660\u0661\u0667\u0666", true},
        {"17", "\u0660\u0661\u0667\u0666", false},
    };
    for (const Case& each : cases)
        EXPECT_EQ(findsNumber(each.query, each.number), each.found) << each.query << " in " << each.number;
}

TEST(ContactMatching, LooksAtAddressesAsTheyStandOnALetter) {
    ContactCard card;
    card.postalAddresses.emplace_back();
    card.postalAddresses[0].address.street = "Hauptstra\u00dfe 1";
    card.postalAddresses[0].address.city = "K\u00f6ln";
    EXPECT_TRUE(finds("1\nkoln", card));
    EXPECT_TRUE(finds("HAUPTSTRASSE", card));
    EXPECT_FALSE(finds("berlin", card));
}

TEST(ContactMatching, DoesNotLookAtLabelsOrIdentifiers) {
    ContactCard card = named("Anna", "", "");
    card.identifier = "needle";
    card.phoneNumbers = {{"needle", "1"}};
    EXPECT_FALSE(finds("needle", card));
}

} // namespace
} // namespace vesk::VeskContactsOperations
