#include "VeskShellCore/ContactsModels.hpp"

#include "tests/VeskShellCore/GoldenRecords.hpp"

namespace vesk {
namespace {

using test::expectGolden, test::expectRequired;

TEST(ContactsModels, EntryWithEverything) {
    const std::string json = R"({
  "addresses" : [
    {
      "city" : "Berlin",
      "country" : "Germany",
      "countryCode" : "de",
      "formattedAddress" : "Hauptstr. 1\n10115 Berlin\nGermany",
      "label" : "work",
      "postalCode" : "10115",
      "state" : "BE",
      "street" : "Hauptstr. 1"
    }
  ],
  "department" : "Roses",
  "emails" : [
    {
      "label" : "home",
      "value" : "anna@example.com"
    }
  ],
  "id" : "uid-1",
  "jobTitle" : "Gardener",
  "name" : "Anna Schmidt",
  "organization" : "Blue Ltd",
  "phones" : [
    {
      "label" : "mobile",
      "value" : "+49 176"
    }
  ]
})";
    const auto entry = expectGolden<CapabilityContactEntry>(json);
    EXPECT_EQ(entry.addresses->front().countryCode, "de");
    EXPECT_EQ(entry.phones, (std::vector<CapabilityContactField>{{"mobile", "+49 176"}}));
    expectRequired<CapabilityContactEntry>(json, {"emails", "id", "name", "phones"});
}

TEST(ContactsModels, EntryWithoutAnything) {
    expectGolden<CapabilityContactEntry>(R"({
  "emails" : [

  ],
  "id" : "uid-1",
  "name" : "Unnamed Contact",
  "phones" : [

  ]
})");
}

TEST(ContactsModels, SearchResponse) {
    const std::string json = R"({
  "brokerPath" : "\/b",
  "bundlePath" : "\/a.app",
  "contacts" : [

  ],
  "detail" : "No Contacts matched the query.",
  "query" : "dana"
})";
    expectGolden<CapabilityContactsSearchResponse>(json);
    expectRequired<CapabilityContactsSearchResponse>(json, {"brokerPath", "contacts", "detail", "query"});
}

TEST(ContactsModels, SaveResponse) {
    const std::string json = R"({
  "brokerPath" : "\/b",
  "contact" : {
    "emails" : [

    ],
    "id" : "1",
    "name" : "Cher",
    "phones" : [

    ]
  },
  "detail" : "d"
})";
    expectGolden<CapabilityContactSaveResponse>(json);
    expectRequired<CapabilityContactSaveResponse>(json, {"brokerPath", "contact", "detail"});
}

} // namespace
} // namespace vesk
