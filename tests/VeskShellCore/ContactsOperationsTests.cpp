#include "VeskShellCore/ContactsOperations.hpp"

#include "VeskShellCore/ContactsError.hpp"
#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gtest/gtest.h>

namespace vesk::VeskContactsOperations {
namespace {

using Names = std::vector<std::string>;

class ContactsOperations : public ::testing::Test {
protected:
    ContactsOperations() { grant(3); }

    test::FakePlatform platform;
    test::FakeContactStore& store = platform.fakeContactStore;
    Names& requests = platform.fakeConsent.requests;

    void grant(AuthorizationStatus status) { platform.fakeConsent.statuses[PrivacyService::contacts] = status; }

    /// Adds a contact; the reference holds until the next one is added.
    ContactCard& addContact(const std::string& given, const std::string& family = {}) {
        ContactCard card;
        card.identifier = "id-" + given;
        card.givenName = given;
        card.familyName = family;
        return store.stored.emplace_back(std::move(card));
    }

    CapabilityContactsSearchResponse search(const std::string& query) {
        return test::runTask(searchContacts(platform, query, platform.bundle));
    }
    CapabilityContactSaveResponse save(CapabilityContactSaveRequest request) {
        return test::runTask(saveContact(platform, std::move(request), platform.bundle));
    }
    Names found(const std::string& query) {
        Names names;
        for (const CapabilityContactEntry& entry : search(query).contacts) names.push_back(entry.name);
        return names;
    }
    static CapabilityContactSaveRequest requestFor(const std::string& name,
                                                   const std::optional<std::string>& target = {}) {
        CapabilityContactSaveRequest request;
        request.name = name;
        request.targetId = target;
        return request;
    }

    /// "CODE TEXT" of the failure of `work`.
    template <class Work> static std::string failureOf(Work work) {
        try {
            work();
        } catch (const ContactsError& error) {
            EXPECT_EQ(error.domain(), "VeskContactsOperations");
            return std::to_string(error.code()) + " " + error.description();
        } catch (const ErrorRecord& error) {
            return error.domain() + " " + std::to_string(error.code());
        }
        return "no failure";
    }
};

constexpr const char* denied =
    "403 Contacts access was denied for Vesk. Enable Contacts access in System Settings and try again.";

// ---- Access

TEST_F(ContactsOperations, RefusedStatesFailWithoutAQuestion) {
    const std::pair<AuthorizationStatus, const char*> cases[] = {
        {1, "403 Contacts access is restricted by macOS or device policy."},
        {2, denied},
        {4, "500 Contacts authorization returned an unknown state."},
        {-1, "500 Contacts authorization returned an unknown state."}};
    for (const auto& [status, failure] : cases) {
        grant(status);
        EXPECT_EQ(failureOf([&] { search("a"); }), failure) << status;
        EXPECT_EQ(failureOf([&] { save(requestFor("Anna")); }), failure) << status;
    }
    EXPECT_TRUE(requests.empty());
    EXPECT_TRUE(store.calls.empty());
}

TEST_F(ContactsOperations, AnUndecidedUserIsAskedAndMayGrant) {
    grant(0);
    platform.fakeConsent.answer.granted = true;
    search("a");
    EXPECT_EQ(requests, Names{"access 3"});
    EXPECT_EQ(store.calls, Names{"forEachContact"});
}

TEST_F(ContactsOperations, AnUndecidedUserMayRefuse) {
    grant(0);
    platform.fakeConsent.answer = {false, "No display."};
    EXPECT_EQ(failureOf([&] { search("a"); }), denied);
    EXPECT_EQ(failureOf([&] { save(requestFor("Anna")); }), denied);
    EXPECT_TRUE(store.calls.empty());
}

TEST_F(ContactsOperations, ArgumentsAreTestedBeforeAccess) {
    grant(0);
    EXPECT_EQ(failureOf([&] { search(" \n"); }), "400 Contact search query is required.");
    EXPECT_EQ(failureOf([&] { save(requestFor("\u3000")); }), "400 Contact name is required.");
    EXPECT_TRUE(requests.empty());
}

// ---- Search

TEST_F(ContactsOperations, SearchAnswersWithTheTrimmedQuery) {
    addContact("Dana");
    const auto response = search(" dana\n");
    EXPECT_EQ(response.query, "dana");
    EXPECT_EQ(response.brokerPath, "Vesk.app");
    EXPECT_EQ(response.bundlePath, "/Applications/Vesk.app");
    EXPECT_EQ(response.detail, "Searched the local macOS Contacts database.");
    EXPECT_EQ(search("nobody").detail, "No Contacts matched the query.");
    EXPECT_TRUE(search("nobody").contacts.empty());
}

TEST_F(ContactsOperations, SearchSortsByNameInTheOrderOfTheLocale) {
    for (const char* name : {"zoe x", "\u00c4nne x", "anna x", "Bert x", "BERT x", ""}) addContact(name);
    store.stored.back().nickname = " "; // nothing to call it by
    EXPECT_EQ(found("x"), (Names{"anna x", "\u00c4nne x", "Bert x", "BERT x", "zoe x"}));
    EXPECT_EQ(found("e"), (Names{"\u00c4nne x", "Bert x", "BERT x", "Unnamed Contact", "zoe x"}));
    platform.fakeLocaleSettings.identifier = "sv_SE";
    EXPECT_EQ(found("x"), (Names{"anna x", "Bert x", "BERT x", "zoe x", "\u00c4nne x"}));
}

TEST_F(ContactsOperations, SearchFoldsByTheLocale) {
    addContact("ISPARTA");
    EXPECT_EQ(found("isparta"), Names{"ISPARTA"});
    platform.fakeLocaleSettings.identifier = "tr_TR";
    EXPECT_TRUE(found("isparta").empty());
}

TEST_F(ContactsOperations, SearchHasNoLimit) {
    for (int i = 0; i < 1000; ++i) addContact("Dana " + std::to_string(i));
    EXPECT_EQ(search("dana").contacts.size(), 1000U);
}

TEST_F(ContactsOperations, AnEntryShowsWhatIsStored) {
    ContactCard& card = addContact("Anna", "Schmidt");
    card.organizationName = " Blue ";
    card.jobTitle = " ";
    card.departmentName = "Roses";
    card.phoneNumbers = {{contactLabel::mobile, " 0176 "}, {"Ferienhaus", "2"}, {std::nullopt, "3"}};
    card.emailAddresses = {{contactLabel::work, "a@example.com"}};
    card.postalAddresses = {{contactLabel::home,
                             {.street = " Road 1 ",
                              .city = "Town",
                              .state = " ",
                              .postalCode = "123",
                              .country = "Land",
                              .isoCountryCode = "de"}},
                            {std::nullopt, {}}};
    CapabilityContactEntry expected;
    expected.id = "id-Anna";
    expected.name = "Anna Schmidt";
    expected.organization = "Blue";
    expected.department = "Roses";
    expected.phones = {{"mobile", " 0176 "}, {"Ferienhaus", "2"}, {"other", "3"}};
    expected.emails = {{"work", "a@example.com"}};
    CapabilityContactAddress home;
    home.label = "home";
    home.street = "Road 1";
    home.city = "Town";
    home.postalCode = "123";
    home.country = "Land";
    home.countryCode = "de";
    home.formattedAddress = "Road 1 \nTown\nLand";
    CapabilityContactAddress bare;
    bare.label = "other";
    expected.addresses = {home, bare};
    EXPECT_EQ(search("anna").contacts, std::vector{expected});
}

TEST_F(ContactsOperations, WithoutAddressesTheKeyIsAbsent) {
    addContact("Anna");
    const auto entry = search("anna").contacts.front();
    EXPECT_EQ(entry.addresses, std::nullopt);
    EXPECT_TRUE(entry.emails.empty());
}

TEST_F(ContactsOperations, FailuresOfTheStorePassThrough) {
    store.readFailure = ErrorRecord("Store", 7, "broken");
    EXPECT_EQ(failureOf([&] { search("a"); }), "Store 7");
    store.saveFailure = ErrorRecord("Store", 8, "full");
    EXPECT_EQ(failureOf([&] { save(requestFor("Anna")); }), "Store 8");
    EXPECT_EQ(failureOf([&] { save(requestFor("Anna", "nobody")); }), "FakeContactStore 404");
}

// ---- Save

TEST_F(ContactsOperations, ANewNameIsSplitBeforeItsLastWord) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"Anna Maria Schmidt", "Anna Maria", "Schmidt"},
        {"  Anna\u00a0\t Maria   Schmidt ", "Anna Maria", "Schmidt"},
        {"Bo Li", "Bo", "Li"},
        {"Cher", "Cher", ""},
        {" Cher ", "Cher", ""}};
    for (const auto& [name, given, family] : cases) {
        const auto response = save(requestFor(name));
        EXPECT_EQ(store.stored.back().givenName, given);
        EXPECT_EQ(store.stored.back().familyName, family);
        EXPECT_EQ(response.detail, "Saved a new local macOS Contacts entry.");
        EXPECT_EQ(response.contact.id, store.stored.back().identifier);
    }
}

TEST_F(ContactsOperations, ANewContactTakesEverything) {
    auto request = requestFor("Anna Schmidt", " ");
    request.organization = " Blue ";
    request.jobTitle = "Gardener";
    request.department = "Roses";
    request.note = "secret";
    request.phones = {{"", "1"}, {"Office", " 2 "}, {"home", " \n"}};
    request.emails = {{" ", "a@example.com"}, {"Home", "b@example.com"}};
    const auto response = save(request);
    const ContactCard& card = store.stored.back();
    EXPECT_EQ(store.calls, Names{"add"});
    EXPECT_EQ(card.organizationName, "Blue");
    EXPECT_EQ(card.jobTitle, "Gardener");
    EXPECT_EQ(card.departmentName, "Roses");
    EXPECT_EQ(card.phoneNumbers, (std::vector<LabeledValue>{{contactLabel::mobile, "1"}, {contactLabel::work, "2"}}));
    EXPECT_EQ(card.emailAddresses, (std::vector<LabeledValue>{{contactLabel::work, "a@example.com"},
                                                              {contactLabel::home, "b@example.com"}}));
    EXPECT_EQ(response.contact.note, std::nullopt);
    EXPECT_EQ(response.contact.phones.back(), (CapabilityContactField{"work", "2"}));
    EXPECT_EQ(response.bundlePath, "/Applications/Vesk.app");
}

TEST_F(ContactsOperations, ATargetIsExtendedAndNotRenamed) {
    ContactCard& card = addContact("Anna", "Schmidt");
    card.organizationName = "Old";
    card.jobTitle = "Clerk";
    card.phoneNumbers = {{contactLabel::home, "1"}};
    card.emailAddresses = {{contactLabel::home, "a@example.com"}};
    card.postalAddresses.resize(1);
    card.postalAddresses[0].address.street = "Old Road";
    auto request = requestFor("Somebody Else", " id-Anna ");
    request.organization = "New";
    request.jobTitle = " ";
    request.phones.emplace({CapabilityContactField{"work", "1"}});
    request.emails.emplace({CapabilityContactField{"work", "a@example.com"}});
    CapabilityContactAddress address;
    address.label = "work";
    address.street = "New Road";
    request.addresses = {address};
    const auto response = save(request);
    const ContactCard& saved = store.stored.front();
    EXPECT_EQ(store.calls, (Names{"contact id-Anna", "update id-Anna"}));
    EXPECT_EQ(response.contact.name, "Anna Schmidt");
    EXPECT_EQ(response.detail, "Updated the local macOS Contacts entry.");
    EXPECT_EQ(saved.organizationName, "New");
    EXPECT_EQ(saved.jobTitle, "Clerk");
    EXPECT_EQ(saved.phoneNumbers, (std::vector<LabeledValue>{{contactLabel::home, "1"}, {contactLabel::work, "1"}}));
    EXPECT_EQ(saved.emailAddresses.size(), 2U);
    ASSERT_EQ(saved.postalAddresses.size(), 2U);
    EXPECT_EQ(saved.postalAddresses.back().address.street, "New Road");
}

TEST_F(ContactsOperations, AnAddressNeedsMoreThanAState) {
    using Address = CapabilityContactAddress;
    struct Case {
        std::optional<std::string> Address::*field;
        bool makesAnAddress;
    };
    const Case cases[] = {{&Address::street, true},           {&Address::city, true},   {&Address::postalCode, true},
                          {&Address::country, true},          {&Address::state, false}, {&Address::countryCode, false},
                          {&Address::formattedAddress, false}};
    for (const Case& each : cases) {
        Address address;
        address.*each.field = " x ";
        auto request = requestFor("Anna");
        request.addresses = {address};
        save(request);
        EXPECT_EQ(store.stored.back().postalAddresses.size(), each.makesAnAddress ? 1U : 0U);
    }
}

TEST_F(ContactsOperations, AnAddressIsStoredTrimmedAndLabelled) {
    CapabilityContactAddress address;
    address.street = " Road 1 ";
    address.city = "\t";
    address.state = "BE ";
    address.countryCode = " de";
    auto request = requestFor("Anna");
    request.addresses = {address, address};
    request.addresses->back().label = "Boat";
    save(request);
    const PostalAddress expected{
        .street = "Road 1", .city = "", .state = "BE", .postalCode = "", .country = "", .isoCountryCode = "de"};
    EXPECT_EQ(store.stored.back().postalAddresses,
              (std::vector<LabeledPostalAddress>{{contactLabel::work, expected}, {"Boat", expected}}));
}

} // namespace
} // namespace vesk::VeskContactsOperations
