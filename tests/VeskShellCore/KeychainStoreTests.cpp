#include "VeskShellCore/KeychainStore.hpp"

#include "VeskShellCore/VeskShellError.hpp"
#include "tests/fakes/FakeKeychain.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesk {
namespace {

using Calls = std::vector<std::string>;

class KeychainStoreTests : public testing::Test {
protected:
    test::FakeKeychain keychain;
    const KeychainStore store{keychain, "Vesk"};

    template <class Call> std::optional<VeskShellError> errorOf(Call call) {
        try {
            call();
            return std::nullopt;
        } catch (const VeskShellError& error) {
            return error;
        }
    }
    template <class Call> void expectError(Call call, const std::string& text, std::int32_t status) {
        const auto error = errorOf(call);
        ASSERT_TRUE(error) << text;
        EXPECT_EQ(error->kind(), VeskShellError::Kind::keychainError) << text;
        EXPECT_EQ(error->status(), status) << text;
        EXPECT_EQ(error->description(), text + " (OSStatus " + std::to_string(status) + ")");
    }
};

TEST_F(KeychainStoreTests, TheAccountsHaveTheseNamesInThisOrder) {
    EXPECT_THAT(archivedKeychainAccounts,
                testing::ElementsAre(testing::StrEq("TELEGRAM_BOT_TOKEN"), testing::StrEq("VESK_AUTH_TOKEN"),
                                     testing::StrEq("VESK_MOBILE_RELAY_TOKEN"), testing::StrEq("OPENAI_API_KEY"),
                                     testing::StrEq("OPENROUTER_API_KEY"), testing::StrEq("ANTHROPIC_API_KEY"),
                                     testing::StrEq("ZAI_API_KEY"), testing::StrEq("FIRECRAWL_API_KEY"),
                                     testing::StrEq("RESEND_API_KEY"), testing::StrEq("VESK_SEARCH_API_KEY")));
    EXPECT_STREQ(KeychainAccount::veskAuthRedeemGrant, "VESK_AUTH_REDEEM_GRANT");
    EXPECT_STREQ(liveKeychainService, "Vesk");
}

TEST_F(KeychainStoreTests, TheServiceIsTheOneOfTheStore) {
    EXPECT_EQ(store.service(), "Vesk");
    KeychainStore(keychain, "Other").upsert("A", "1");
    EXPECT_EQ(store.read("A"), std::nullopt);
    EXPECT_EQ(KeychainStore(keychain, "Other").read("A"), "1");
}

TEST_F(KeychainStoreTests, ABlankAccountReachesNothing) {
    for (const char* account : {"", "  ", "\n\t", "\u00a0"}) {
        store.upsert(account, "secret");
        EXPECT_EQ(store.read(account), std::nullopt);
        store.remove(account);
    }
    store.upsert(" ", "\xff");
    EXPECT_TRUE(keychain.calls.empty());
    EXPECT_TRUE(keychain.items.empty());
}

TEST_F(KeychainStoreTests, ANewItemIsUpdatedInVainAndThenAdded) {
    store.upsert("OPENAI_API_KEY", "secret");
    EXPECT_EQ(keychain.calls, (Calls{"update Vesk/OPENAI_API_KEY", "add Vesk/OPENAI_API_KEY"}));
    EXPECT_EQ(store.read("OPENAI_API_KEY"), "secret");
}

TEST_F(KeychainStoreTests, AnItemThatIsThereIsUpdatedAndNothingIsAdded) {
    keychain.items[{"Vesk", "OPENAI_API_KEY"}] = "old";
    store.upsert("OPENAI_API_KEY", "new");
    EXPECT_EQ(keychain.calls, Calls{"update Vesk/OPENAI_API_KEY"});
    EXPECT_EQ(store.read("OPENAI_API_KEY"), "new");
}

TEST_F(KeychainStoreTests, SecretsAreStoredTrimmed) {
    const std::pair<const char*, const char*> cases[] = {
        {"secret\n", "secret"},
        {" \r\n secret of two \t", "secret of two"},
        {"\u2003schlüssel\u00a0", "schlüssel"},
        {"", ""},
        {" \n ", ""},
    };
    for (const auto& [given, stored] : cases) {
        store.upsert("A", given);
        EXPECT_EQ(store.read("A"), stored) << given;
        EXPECT_EQ((keychain.items[{"Vesk", "A"}]), stored) << given;
    }
}

TEST_F(KeychainStoreTests, ReadingDoesNotTrim) {
    keychain.items[{"Vesk", "A"}] = " secret\n";
    EXPECT_EQ(store.read("A"), " secret\n");
}

TEST_F(KeychainStoreTests, AnAccountAmongBlanksIsTheTrimmedOne) {
    store.upsert("  A\n", "1");
    EXPECT_EQ((keychain.items[{"Vesk", "A"}]), "1");
    EXPECT_EQ(store.read("\tA "), "1");
    store.remove(" A\u00a0");
    EXPECT_TRUE(keychain.items.empty());
}

TEST_F(KeychainStoreTests, WhatIsNotThereIsReadAsNothingAndDeletedWithSuccess) {
    EXPECT_EQ(store.read("UNKNOWN"), std::nullopt);
    EXPECT_NO_THROW(store.remove("UNKNOWN"));
    EXPECT_EQ(keychain.calls, (Calls{"copy Vesk/UNKNOWN", "remove Vesk/UNKNOWN"}));
}

TEST_F(KeychainStoreTests, TextThatIsNoUtf8IsRefusedBeforeTheKeychain) {
    expectError([&] { store.upsert(" A ", "sec\xffret"); }, "Unable to encode secret for A.", -50);
    EXPECT_TRUE(keychain.calls.empty());
}

TEST_F(KeychainStoreTests, AFailedUpdateIsToldAndNothingIsAdded) {
    keychain.faults = {{.verb = "update", .account = {}, .status = KeychainStatus::locked}};
    expectError([&] { store.upsert(" A ", "secret"); }, "Unable to update Keychain item for A.", -25308);
    EXPECT_EQ(keychain.calls, Calls{"update Vesk/A"});
}

TEST_F(KeychainStoreTests, AFailedAddIsTold) {
    for (const std::int32_t status : {KeychainStatus::duplicateItem, KeychainStatus::failed}) {
        keychain.faults = {{.verb = "add", .account = {}, .status = status}};
        expectError([&] { store.upsert(" A ", "secret"); }, "Unable to add Keychain item for A.", status);
    }
}

TEST_F(KeychainStoreTests, AFailedReadIsToldWithItsStatusInParentheses) {
    keychain.faults = {{.verb = "copy", .account = {}, .status = KeychainStatus::denied}};
    expectError([&] { store.read(" A "); }, "Unable to read Keychain item for A.", -25293);
    const auto error = errorOf([&] { store.read("A"); });
    EXPECT_TRUE(error && error->description().ends_with(" (OSStatus -25293)"));
}

TEST_F(KeychainStoreTests, BytesThatAreNoTextAreUndecodable) {
    keychain.items[{"Vesk", "A"}] = "sec\xc3";
    expectError([&] { store.read(" A "); }, "Unable to decode Keychain item for A.", -26275);
}

TEST_F(KeychainStoreTests, AnItemWithoutBytesIsUndecodable) {
    keychain.items[{"Vesk", "A"}] = "x";
    keychain.withoutBytes = {"A"};
    expectError([&] { store.read("A"); }, "Unable to decode Keychain item for A.", -26275);
}

TEST_F(KeychainStoreTests, AFailedDeletionIsTold) {
    keychain.faults = {{.verb = "remove", .account = {}, .status = KeychainStatus::unavailable}};
    expectError([&] { store.remove(" A "); }, "Unable to delete Keychain item for A.", -25291);
}

TEST_F(KeychainStoreTests, NoMessageHoldsTheSecret) {
    for (const char* verb : {"update", "add"}) {
        keychain.faults = {{.verb = verb, .account = {}}};
        const auto error = errorOf([&] { store.upsert("A", "planted-secret"); });
        ASSERT_TRUE(error) << verb;
        EXPECT_THAT(error->rendering(), testing::Not(testing::HasSubstr("planted"))) << verb;
    }
    const auto error = errorOf([&] { store.upsert("A", "planted-secret\xff"); });
    ASSERT_TRUE(error);
    EXPECT_THAT(error->rendering(), testing::Not(testing::HasSubstr("planted")));
}

} // namespace
} // namespace vesk
