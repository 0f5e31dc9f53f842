#include "VeskShellCore/VeskAuthError.hpp"
#include "VeskShellCore/VeskAuthRecoveryStore.hpp"
#include "VeskShellCore/VeskShellError.hpp"
#include "tests/fakes/FakeKeychain.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

class VeskAuthRecoveryStoreTests : public testing::Test {
protected:
    std::optional<std::string> kept;
    std::optional<int> refusedLoading, refusedSaving, refusedDeleting;
    std::vector<std::string> steps;

    VeskAuthRecoveryStore store{[this] {
                                    refuse(refusedLoading);
                                    return kept;
                                },
                                [this](const std::string& grant) {
                                    refuse(refusedSaving);
                                    kept = grant;
                                    steps.push_back("save " + grant);
                                },
                                [this] {
                                    refuse(refusedDeleting);
                                    kept.reset();
                                    steps.emplace_back("delete");
                                }};

    static void refuse(std::optional<int> code) {
        if (code) throw ErrorRecord("store", *code, "refused");
    }
    /// Redeems with an operation that returns a value or, with a code, fails.
    RecoverableAuthGrantCommit<std::string> redeem(const std::string& grant, std::optional<int> failure = {}) {
        std::function<Task<std::string>()> operation = [this, failure]() -> Task<std::string> {
            steps.emplace_back("operation");
            refuse(failure);
            co_return "value";
        };
        return runTask(withRecoverableAuthGrant<std::string>(grant, store, operation));
    }
    template <class Call> static std::int64_t codeOf(Call call) {
        try {
            call();
        } catch (const ErrorRecord& error) {
            return error.code();
        }
        return 0;
    }
};

TEST_F(VeskAuthRecoveryStoreTests, HasTheAccountOfTheKeychain) {
    EXPECT_STREQ(VeskAuthRecoveryStore::account, "VESK_AUTH_REDEEM_GRANT");
}

TEST_F(VeskAuthRecoveryStoreTests, KeepsAGrantTrimmed) {
    store.persist(" grant\n");
    EXPECT_EQ(kept, "grant");
    EXPECT_EQ(store.pendingGrant(), "grant");
    store.persist("other");
    EXPECT_EQ(store.pendingGrant(), "other");
    store.clear();
    EXPECT_EQ(store.pendingGrant(), std::nullopt);
}

TEST_F(VeskAuthRecoveryStoreTests, AStoredGrantIsReadTrimmed) {
    kept = "\tgrant \n";
    EXPECT_EQ(store.pendingGrant(), "grant");
    EXPECT_EQ(kept, "\tgrant \n");
}

TEST_F(VeskAuthRecoveryStoreTests, ARecordOfBlanksIsNoGrantAndStays) {
    for (const char* blank : {"", " ", "\n\t"}) {
        kept = blank;
        EXPECT_EQ(store.pendingGrant(), std::nullopt);
        EXPECT_EQ(kept, blank);
    }
}

TEST_F(VeskAuthRecoveryStoreTests, ABlankGrantIsInvalidAndNothingIsStored) {
    kept = "earlier";
    for (const char* blank : {"", "  ", "\n"}) {
        try {
            store.persist(blank);
            FAIL();
        } catch (const VeskAuthError& error) {
            EXPECT_EQ(error.kind(), VeskAuthError::Kind::invalidResponse);
        }
    }
    EXPECT_EQ(kept, "earlier");
}

TEST_F(VeskAuthRecoveryStoreTests, TheStoresFailuresPassThrough) {
    refusedLoading = 1;
    refusedSaving = 2;
    refusedDeleting = 3;
    EXPECT_EQ(codeOf([&] { store.pendingGrant(); }), 1);
    EXPECT_EQ(codeOf([&] { store.persist("grant"); }), 2);
    EXPECT_EQ(codeOf([&] { store.clear(); }), 3);
}

TEST_F(VeskAuthRecoveryStoreTests, ARedemptionIsSavedFirstAndClearedLast) {
    const auto commit = redeem("grant\n");
    EXPECT_EQ(commit.value, "value");
    EXPECT_TRUE(commit.recoveryGrantCleared);
    EXPECT_EQ(steps, (std::vector<std::string>{"save grant", "operation", "delete"}));
    EXPECT_EQ(store.pendingGrant(), std::nullopt);
}

TEST_F(VeskAuthRecoveryStoreTests, ABlankGrantIsNeverRedeemed) {
    EXPECT_THROW(redeem(" \n"), VeskAuthError);
    EXPECT_EQ(steps, std::vector<std::string>());
}

TEST_F(VeskAuthRecoveryStoreTests, AGrantThatCannotBeSavedIsNeverRedeemed) {
    refusedSaving = 5;
    EXPECT_EQ(codeOf([&] { redeem("grant"); }), 5);
    EXPECT_EQ(steps, std::vector<std::string>());
}

TEST_F(VeskAuthRecoveryStoreTests, AFailedRedemptionLeavesTheGrantForTheNext) {
    EXPECT_EQ(codeOf([&] { redeem("grant", 7); }), 7);
    EXPECT_EQ(steps, (std::vector<std::string>{"save grant", "operation"}));
    EXPECT_EQ(store.pendingGrant(), "grant");
    EXPECT_TRUE(redeem(*store.pendingGrant()).recoveryGrantCleared);
    EXPECT_EQ(store.pendingGrant(), std::nullopt);
}

TEST_F(VeskAuthRecoveryStoreTests, NotBeingAbleToClearLosesNobodyTheSignIn) {
    refusedDeleting = 9;
    const auto commit = redeem("grant");
    EXPECT_EQ(commit.value, "value");
    EXPECT_FALSE(commit.recoveryGrantCleared);
    EXPECT_EQ(kept, "grant");
}

TEST(VeskAuthRecoveryStoreInKeychain, HoldsTheGrantUnderItsAccount) {
    FakeKeychain keychain;
    const VeskAuthRecoveryStore store{KeychainStore(keychain, "Vesk")};
    EXPECT_EQ(store.pendingGrant(), std::nullopt);
    store.persist(" grant\n");
    EXPECT_EQ(keychain.items,
              (std::map<FakeKeychain::Key, std::string>{{{"Vesk", "VESK_AUTH_REDEEM_GRANT"}, "grant"}}));
    EXPECT_EQ(store.pendingGrant(), "grant");
    store.persist("newer");
    EXPECT_EQ(store.pendingGrant(), "newer");
    store.clear();
    EXPECT_TRUE(keychain.items.empty());
    store.clear();
}

TEST(VeskAuthRecoveryStoreInKeychain, ARefusalIsTheKeychainsFailure) {
    FakeKeychain keychain;
    const VeskAuthRecoveryStore store{KeychainStore(keychain, "Vesk")};
    for (const char* verb : {"update", "copy", "remove"})
        keychain.faults.push_back({.verb = verb, .account = "", .status = KeychainStatus::locked});
    const auto statusOf = [](auto call) {
        try {
            call();
        } catch (const VeskShellError& error) {
            EXPECT_EQ(error.kind(), VeskShellError::Kind::keychainError);
            EXPECT_EQ(error.description().find("planted"), std::string::npos);
            return error.status();
        }
        return 0;
    };
    EXPECT_EQ(statusOf([&] { store.persist("planted"); }), KeychainStatus::locked);
    EXPECT_EQ(statusOf([&] { store.pendingGrant(); }), KeychainStatus::locked);
    EXPECT_EQ(statusOf([&] { store.clear(); }), KeychainStatus::locked);
}

} // namespace
} // namespace vesk::test
