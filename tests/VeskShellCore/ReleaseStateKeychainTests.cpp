#include "VeskShellCore/ReleaseStateKeychain.hpp"

#include "VeskSupport/Json.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/fakes/FakeKeychain.hpp"
#include "tests/fakes/FakePropertyListCoder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesk {
namespace {

using Calls = std::vector<std::string>;
using Error = ReleaseStateKeychainError;
using Kind = Error::Kind;

class ReleaseStateKeychainTests : public testing::Test {
protected:
    const std::string rehearsal = "Vesk Release Rehearsal 01020304-0506-4708-890A-0B0C0D0E0F10";
    test::FakeKeychain keychain;
    test::FakePropertyListCoder coder;
    test::FakeRandomSource random;

    static ReleaseStateSecretArchive archive(std::map<std::string, std::string> values = {}) {
        return {1, "Vesk", {archivedKeychainAccounts.begin(), archivedKeychainAccounts.end()}, std::move(values)};
    }
    template <class Call> void expectError(Call call, Kind kind, const std::string& description) {
        try {
            call();
            FAIL() << description;
        } catch (const Error& error) {
            EXPECT_EQ(error.kind(), kind) << description;
            EXPECT_EQ(error.description(), description);
        }
    }
    void expectInvalid(const ReleaseStateSecretArchive& wrong, const std::string& description) {
        expectError([&] { ReleaseStateKeychain::validate(wrong); }, Kind::invalidArchive, description);
        expectError([&] { ReleaseStateKeychain::encode(coder, wrong); }, Kind::invalidArchive, description);
        const std::string bytes = coder.encodeBinary(toPropertyList(wrong));
        expectError([&] { ReleaseStateKeychain::decode(coder, bytes); }, Kind::invalidArchive, description);
        expectError([&] { ReleaseStateKeychain::rehearse(keychain, random, wrong); }, Kind::invalidArchive,
                    description);
        EXPECT_TRUE(keychain.calls.empty()) << description;
    }
    bool rehearse(const ReleaseStateSecretArchive& played) {
        return ReleaseStateKeychain::rehearse(keychain, random, played);
    }
    Calls callsOf(const std::string& verb) const {
        Calls result;
        for (const std::string& call : keychain.calls)
            if (call.starts_with(verb + " ")) result.push_back(call);
        return result;
    }
};

TEST_F(ReleaseStateKeychainTests, ItsConstantsAreThese) {
    EXPECT_STREQ(ReleaseStateKeychain::liveService, "Vesk");
    EXPECT_EQ(ReleaseStateKeychain::rehearsalServicePrefix, "Vesk Release Rehearsal ");
    EXPECT_EQ(ReleaseStateKeychain::accounts, archivedKeychainAccounts);
}

TEST_F(ReleaseStateKeychainTests, ErrorsSayWhatTheyAre) {
    EXPECT_EQ(Error::invalidArchive("Text.").description(), "Text.");
    EXPECT_EQ(Error::unsafeService("Other").description(), "Refusing to use unsupported Keychain service: Other");
    EXPECT_EQ(Error::security("Reading", -36).description(), "Reading failed with Keychain status -36.");
    EXPECT_EQ(Error::security("Reading", -36).status(), -36);
    EXPECT_EQ(Error::security("Reading", -36).domain(), "ReleaseStateKeychainError");
}

TEST_F(ReleaseStateKeychainTests, ValidationFindsTheFirstFault) {
    auto wrong = archive({{"UNKNOWN", "x"}});
    wrong.schemaVersion = 2;
    wrong.sourceService = "Vesk ";
    std::swap(wrong.accounts[0], wrong.accounts[1]);
    expectInvalid(wrong, "Unsupported secret archive schema.");
    wrong.schemaVersion = 1;
    expectInvalid(wrong, "Secret archive does not come from the Vesk service.");
    wrong.sourceService = "Vesk";
    expectInvalid(wrong, "Secret archive account allowlist does not match this build.");
    std::swap(wrong.accounts[0], wrong.accounts[1]);
    expectInvalid(wrong, "Secret archive contains an unexpected account.");
    wrong.values.clear();
    EXPECT_NO_THROW(ReleaseStateKeychain::validate(wrong));
}

TEST_F(ReleaseStateKeychainTests, TheAccountsHaveToBeAllOfThemAndNoMore) {
    const std::string description = "Secret archive account allowlist does not match this build.";
    auto wrong = archive();
    wrong.accounts.pop_back();
    expectInvalid(wrong, description);
    wrong = archive();
    wrong.accounts.emplace_back("VESK_AUTH_REDEEM_GRANT");
    expectInvalid(wrong, description);
}

TEST_F(ReleaseStateKeychainTests, TheGrantOfASignInIsUnexpected) {
    expectInvalid(archive({{"VESK_AUTH_REDEEM_GRANT", "x"}}), "Secret archive contains an unexpected account.");
}

TEST_F(ReleaseStateKeychainTests, AnArchiveComesBackFromItsBytes) {
    const auto whole = archive({{"OPENAI_API_KEY", "secret\n"}, {"ZAI_API_KEY", std::string("\0\xff", 2)}});
    EXPECT_EQ(ReleaseStateKeychain::decode(coder, ReleaseStateKeychain::encode(coder, whole)), whole);
}

TEST_F(ReleaseStateKeychainTests, BytesThatAreNoListAreTheCodersError) {
    EXPECT_THROW(ReleaseStateKeychain::decode(coder, "no list"), DecodingError);
}

TEST_F(ReleaseStateKeychainTests, AnExportHoldsWhatIsSetAsItIsStored) {
    keychain.items[{"Vesk", "OPENAI_API_KEY"}] = "secret\n";
    keychain.items[{"Vesk", "ZAI_API_KEY"}] = "";
    keychain.items[{"Vesk", "VESK_AUTH_REDEEM_GRANT"}] = "grant";
    keychain.items[{"Other", "RESEND_API_KEY"}] = "other";
    EXPECT_EQ(ReleaseStateKeychain::exportNamedSecrets(keychain, "Vesk"),
              archive({{"OPENAI_API_KEY", "secret\n"}, {"ZAI_API_KEY", ""}}));
    Calls expected;
    for (const char* account : archivedKeychainAccounts) expected.push_back(std::string("copy Vesk/") + account);
    EXPECT_EQ(keychain.calls, expected);
}

TEST_F(ReleaseStateKeychainTests, AnExportOfNothingIsValidAndRehearses) {
    const auto exported = ReleaseStateKeychain::exportNamedSecrets(keychain, "Vesk");
    EXPECT_EQ(exported, archive());
    EXPECT_NO_THROW(ReleaseStateKeychain::validate(exported));
    EXPECT_TRUE(rehearse(exported));
}

TEST_F(ReleaseStateKeychainTests, AnExportStopsAtAFailure) {
    keychain.faults = {{.verb = "copy", .account = "VESK_AUTH_TOKEN", .status = KeychainStatus::locked}};
    expectError([&] { ReleaseStateKeychain::exportNamedSecrets(keychain, "Vesk"); }, Kind::security,
                "Reading named item for VESK_AUTH_TOKEN failed with Keychain status -25308.");
    EXPECT_EQ(keychain.calls.size(), 2U);
}

TEST_F(ReleaseStateKeychainTests, AnItemWithoutBytesFailsWithStatusZero) {
    keychain.items[{"Vesk", "VESK_AUTH_TOKEN"}] = "x";
    keychain.withoutBytes = {"VESK_AUTH_TOKEN"};
    expectError([&] { ReleaseStateKeychain::exportNamedSecrets(keychain, "Vesk"); }, Kind::security,
                "Reading named item for VESK_AUTH_TOKEN failed with Keychain status 0.");
}

TEST_F(ReleaseStateKeychainTests, OnlyTheLiveServiceIsExported) {
    for (const std::string& service : {rehearsal, std::string(), std::string("vesk"), std::string("Vesk ")})
        expectError([&] { ReleaseStateKeychain::exportNamedSecrets(keychain, service); }, Kind::unsafeService,
                    "Refusing to use unsupported Keychain service: " + service);
    EXPECT_TRUE(keychain.calls.empty());
}

TEST_F(ReleaseStateKeychainTests, PresenceTellsEachAccountAndReadsNone) {
    keychain.items[{"Vesk", "OPENAI_API_KEY"}] = "secret";
    const auto found = ReleaseStateKeychain::presence(keychain, "Vesk");
    EXPECT_EQ(found.size(), 10U);
    for (const auto& [account, isThere] : found) EXPECT_EQ(isThere, account == "OPENAI_API_KEY") << account;
    Calls expected;
    for (const char* account : archivedKeychainAccounts) expected.push_back(std::string("find Vesk/") + account);
    EXPECT_EQ(keychain.calls, expected);
}

TEST_F(ReleaseStateKeychainTests, PresenceTakesRehearsalServicesAndRefusesOthers) {
    EXPECT_EQ(ReleaseStateKeychain::presence(keychain, rehearsal).size(), 10U);
    keychain.calls.clear();
    for (const char* service : {"Vesk Release Rehearsal", "Vesk Release", "Vesk2", "", "Other"})
        expectError([&] { ReleaseStateKeychain::presence(keychain, service); }, Kind::unsafeService,
                    std::string("Refusing to use unsupported Keychain service: ") + service);
    EXPECT_TRUE(keychain.calls.empty());
}

TEST_F(ReleaseStateKeychainTests, PresenceStopsAtAFailure) {
    keychain.faults = {{.verb = "find", .account = "VESK_AUTH_TOKEN", .status = KeychainStatus::unavailable}};
    expectError([&] { ReleaseStateKeychain::presence(keychain, "Vesk"); }, Kind::security,
                "Checking named item for VESK_AUTH_TOKEN failed with Keychain status -25291.");
    EXPECT_EQ(keychain.calls.size(), 2U);
}

TEST_F(ReleaseStateKeychainTests, ARehearsalAddsReadsAndRemoves) {
    keychain.items[{"Vesk", "ZAI_API_KEY"}] = "live";
    EXPECT_TRUE(rehearse(archive({{"ZAI_API_KEY", "secret\n"}, {"OPENAI_API_KEY", std::string("\0\xff", 2)}})));
    EXPECT_EQ(callsOf("add"), (Calls{"add " + rehearsal + "/OPENAI_API_KEY", "add " + rehearsal + "/ZAI_API_KEY"}));
    EXPECT_EQ(callsOf("copy").size(), 10U);
    EXPECT_EQ(callsOf("removeAll"), Calls{"removeAll " + rehearsal});
    EXPECT_EQ(callsOf("update"), Calls{});
    EXPECT_EQ(keychain.items, (std::map<test::FakeKeychain::Key, std::string>{{{"Vesk", "ZAI_API_KEY"}, "live"}}));
}

TEST_F(ReleaseStateKeychainTests, ADifferenceEndsTheRehearsalWithFalse) {
    const std::pair<const char*, std::string> changes[] = {{"trimmed", "secret"}, {"emptied", ""}};
    for (const auto& [name, stored] : changes) {
        keychain.calls.clear();
        keychain.readAs["VESK_AUTH_TOKEN"] = stored;
        EXPECT_FALSE(rehearse(archive({{"VESK_AUTH_TOKEN", "secret\n"}}))) << name;
        EXPECT_EQ(callsOf("copy").size(), 2U) << name;
        EXPECT_EQ(callsOf("removeAll").size(), 1U) << name;
        EXPECT_TRUE(keychain.items.empty()) << name;
    }
}

TEST_F(ReleaseStateKeychainTests, AnItemThatIsOnOneSideOnlyIsADifference) {
    keychain.faults = {{.verb = "copy", .account = "ZAI_API_KEY", .status = KeychainStatus::itemNotFound}};
    EXPECT_FALSE(rehearse(archive({{"ZAI_API_KEY", ""}})));
    keychain.faults.clear();
    random.last = 0;
    keychain.items[{rehearsal, "RESEND_API_KEY"}] = "";
    EXPECT_FALSE(rehearse(archive()));
    EXPECT_TRUE(keychain.items.empty());
}

TEST_F(ReleaseStateKeychainTests, AFailedStepIsPassedOnOnceTheServiceIsGone) {
    struct Case {
        test::FakeKeychain::Fault fault;
        const char* description;
        std::size_t removals;
    };
    const Case cases[] = {
        {{.verb = "add", .account = "ZAI_API_KEY", .status = KeychainStatus::duplicateItem},
         "Adding rehearsal item for ZAI_API_KEY failed with Keychain status -25299.",
         1},
        {{.verb = "copy", .account = "ZAI_API_KEY", .status = KeychainStatus::locked},
         "Reading named item for ZAI_API_KEY failed with Keychain status -25308.",
         1},
        {{.verb = "removeAll", .account = {}, .status = KeychainStatus::failed, .times = 1},
         "Deleting rehearsal service failed with Keychain status -36.",
         2},
    };
    for (const Case& c : cases) {
        keychain.calls.clear();
        keychain.faults = {c.fault};
        expectError(
            [&] {
                rehearse(archive({{"OPENAI_API_KEY", "a"}, {"ZAI_API_KEY", "b"}}));
            },
            Kind::security, c.description);
        EXPECT_EQ(callsOf("removeAll").size(), c.removals) << c.description;
        EXPECT_TRUE(keychain.items.empty()) << c.description;
    }
}

TEST_F(ReleaseStateKeychainTests, AServiceThatCannotBeRemovedIsToldAsSuch) {
    const std::string description = "Keychain rehearsal failed and its temporary service could not be removed: "
                                    "Deleting rehearsal service failed with Keychain status -25308.";
    for (const char* verb : {"add", "copy", "removeAll"}) {
        keychain.items.clear();
        keychain.faults = {{.verb = verb, .account = {}},
                           {.verb = "removeAll", .account = {}, .status = KeychainStatus::locked}};
        if (std::string_view(verb) == "removeAll") keychain.faults[0].times = 1;
        expectError([&] { rehearse(archive({{"ZAI_API_KEY", "planted"}})); }, Kind::invalidArchive, description);
    }
}

TEST_F(ReleaseStateKeychainTests, ImportsAndDeletionsTouchRehearsalServicesAlone) {
    keychain.items[{"Vesk", "ZAI_API_KEY"}] = "live";
    for (const std::string service : {"Vesk", "Vesk Release Rehearsal", "", "Other"}) {
        const std::string description = "Refusing to use unsupported Keychain service: " + service;
        expectError(
            [&] {
                ReleaseStateKeychain::importForRehearsal(keychain, {{"ZAI_API_KEY", "x"}}, service);
            },
            Kind::unsafeService, description);
        expectError([&] { ReleaseStateKeychain::deleteRehearsalService(keychain, service); }, Kind::unsafeService,
                    description);
    }
    EXPECT_TRUE(keychain.calls.empty());
    EXPECT_EQ((keychain.items[{"Vesk", "ZAI_API_KEY"}]), "live");
}

TEST_F(ReleaseStateKeychainTests, AnImportThatFailsLeavesWhatItAddedToItsCaller) {
    keychain.faults = {{.verb = "add", .account = "ZAI_API_KEY"}};
    expectError(
        [&] {
            ReleaseStateKeychain::importForRehearsal(
                keychain, {{"OPENAI_API_KEY", "a"}, {"ZAI_API_KEY", "b"}, {"RESEND_API_KEY", "c"}}, rehearsal);
        },
        Kind::security, "Adding rehearsal item for ZAI_API_KEY failed with Keychain status -36.");
    EXPECT_EQ(keychain.items.size(), 1U);
    EXPECT_EQ(callsOf("add").size(), 2U);
}

TEST_F(ReleaseStateKeychainTests, DeletingAServiceWithoutItemsSucceeds) {
    EXPECT_NO_THROW(ReleaseStateKeychain::deleteRehearsalService(keychain, rehearsal));
}

TEST_F(ReleaseStateKeychainTests, NoMessageHoldsASecret) {
    for (const char* verb : {"add", "copy", "removeAll"}) {
        keychain.faults = {{.verb = verb, .account = {}}};
        keychain.items.clear();
        try {
            rehearse(archive({{"ZAI_API_KEY", "planted"}}));
            FAIL() << verb;
        } catch (const Error& error) {
            EXPECT_THAT(error.rendering(), testing::Not(testing::HasSubstr("planted"))) << verb;
        }
    }
}

} // namespace
} // namespace vesk
