#pragma once

#include "VeskPlatform/ContactStore.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <gtest/gtest.h>

namespace vesk::test {

/// What every ContactStore owes. `World::store()` always gives the same store, which is empty at first.
template <class World> class ContactStoreContract : public ::testing::Test {
protected:
    World world;
    ContactStore& store = world.store();

    std::vector<ContactCard> all() {
        std::vector<ContactCard> contacts;
        store.forEachContact([&](const ContactCard& contact) { contacts.push_back(contact); });
        return contacts;
    }
    static ContactCard anna() {
        ContactCard card;
        card.givenName = "Anna Maria";
        card.familyName = "Schmidt";
        card.organizationName = "Blue Ltd";
        card.jobTitle = "Gardener";
        card.departmentName = "Roses";
        card.phoneNumbers = {{contactLabel::mobile, "+49 176 1"}, {"Ferienhaus", "2"}, {contactLabel::iPhone, "3"}};
        card.emailAddresses = {{contactLabel::work, "anna@example.com"}, {contactLabel::home, "a@example.org"}};
        LabeledPostalAddress address{contactLabel::home, {}};
        address.address.street = "Hauptstr. 1";
        address.address.city = "Berlin";
        address.address.postalCode = "10115";
        address.address.country = "Germany";
        address.address.isoCountryCode = "de";
        card.postalAddresses = {address};
        return card;
    }
};
TYPED_TEST_SUITE_P(ContactStoreContract);

TYPED_TEST_P(ContactStoreContract, AnEmptyStoreHasNobody) {
    EXPECT_TRUE(this->all().empty());
    EXPECT_THROW(this->store.contact("x"), ErrorRecord);
    EXPECT_THROW(this->store.contact(""), ErrorRecord);
}

TYPED_TEST_P(ContactStoreContract, AnAddedContactComesBackAsItWasGiven) {
    ContactCard expected = this->anna();
    const ContactCard added = this->store.add(expected);
    EXPECT_FALSE(added.identifier.empty());
    expected.identifier = added.identifier;
    EXPECT_EQ(added, expected);
    EXPECT_EQ(this->all(), std::vector{expected});
    EXPECT_EQ(this->store.contact(added.identifier), expected);
}

TYPED_TEST_P(ContactStoreContract, AContactNeedsNothingAtAll) {
    const ContactCard added = this->store.add({});
    EXPECT_EQ(this->store.contact(added.identifier), added);
    EXPECT_TRUE(added.phoneNumbers.empty());
}

TYPED_TEST_P(ContactStoreContract, AnUpdateChangesEmploymentAndAppends) {
    const std::string identifier = this->store.add(this->anna()).identifier;
    this->store.add({});
    ContactCard wanted = this->store.contact(identifier);
    wanted.organizationName = "Green & Sons; Ltd";
    wanted.jobTitle = "Head, of everything";
    wanted.phoneNumbers.push_back({contactLabel::main, "4"});
    wanted.phoneNumbers.push_back({contactLabel::mobile, "+49 176 1"});
    wanted.emailAddresses.push_back({contactLabel::other, "c@example.net"});
    wanted.postalAddresses.push_back({"Boat", {}});
    wanted.postalAddresses.back().address.city = "K\u00f6ln";
    EXPECT_EQ(this->store.update(wanted), wanted);
    EXPECT_EQ(this->store.contact(identifier), wanted);
    EXPECT_EQ(this->all().size(), 2U);
}

TYPED_TEST_P(ContactStoreContract, AnUpdateOfNobodyFails) {
    ContactCard card = this->anna();
    card.identifier = "nobody";
    EXPECT_THROW(this->store.update(card), ErrorRecord);
    EXPECT_TRUE(this->all().empty());
}

TYPED_TEST_P(ContactStoreContract, AddressesAreWrittenLineByLine) {
    PostalAddress address;
    EXPECT_EQ(this->store.mailingText(address), "");
    address.street = "Hauptstr. 1";
    address.country = "Germany";
    EXPECT_EQ(this->store.mailingText(address), "Hauptstr. 1\nGermany");
    address.city = "Berlin";
    EXPECT_EQ(this->store.mailingText(address), "Hauptstr. 1\nBerlin\nGermany");
}

REGISTER_TYPED_TEST_SUITE_P(ContactStoreContract, AnEmptyStoreHasNobody, AnAddedContactComesBackAsItWasGiven,
                            AContactNeedsNothingAtAll, AnUpdateChangesEmploymentAndAppends, AnUpdateOfNobodyFails,
                            AddressesAreWrittenLineByLine);

} // namespace vesk::test
