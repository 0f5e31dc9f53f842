#pragma once

#include "VeskPlatform/KeychainItems.hpp"
#include "tests/support/OnThreads.hpp"

#include <atomic>
#include <gtest/gtest.h>
#include <string>

namespace vesk::test {

/// What every KeychainItems owes. `World` has `items()`, an empty keychain.
template <class World> class KeychainContract : public ::testing::Test {
protected:
    World world;
    KeychainItems& items() { return world.items(); }

    void expectBytes(const std::string& service, const std::string& account, const std::string& bytes) {
        const auto copied = items().copy(service, account);
        EXPECT_EQ(copied.status, KeychainStatus::success) << service << "/" << account;
        EXPECT_EQ(copied.bytes, bytes) << service << "/" << account;
    }
};

TYPED_TEST_SUITE_P(KeychainContract);

TYPED_TEST_P(KeychainContract, WhatIsNotThereIsNotFound) {
    EXPECT_EQ(this->items().update("Vesk", "A", "x"), KeychainStatus::itemNotFound);
    EXPECT_EQ(this->items().copy("Vesk", "A").status, KeychainStatus::itemNotFound);
    EXPECT_EQ(this->items().find("Vesk", "A"), KeychainStatus::itemNotFound);
    EXPECT_EQ(this->items().remove("Vesk", "A"), KeychainStatus::itemNotFound);
    EXPECT_EQ(this->items().removeAll("Vesk"), KeychainStatus::itemNotFound);
}

TYPED_TEST_P(KeychainContract, WhatIsAddedCanBeFoundReadChangedAndRemoved) {
    EXPECT_EQ(this->items().add("Vesk", "A", "first"), KeychainStatus::success);
    EXPECT_EQ(this->items().find("Vesk", "A"), KeychainStatus::success);
    this->expectBytes("Vesk", "A", "first");
    EXPECT_EQ(this->items().update("Vesk", "A", "second"), KeychainStatus::success);
    this->expectBytes("Vesk", "A", "second");
    EXPECT_EQ(this->items().remove("Vesk", "A"), KeychainStatus::success);
    EXPECT_EQ(this->items().find("Vesk", "A"), KeychainStatus::itemNotFound);
    EXPECT_EQ(this->items().copy("Vesk", "A").status, KeychainStatus::itemNotFound);
}

TYPED_TEST_P(KeychainContract, AddingTwiceIsADuplicateThatChangesNothing) {
    EXPECT_EQ(this->items().add("Vesk", "A", "first"), KeychainStatus::success);
    EXPECT_EQ(this->items().add("Vesk", "A", "second"), KeychainStatus::duplicateItem);
    this->expectBytes("Vesk", "A", "first");
}

TYPED_TEST_P(KeychainContract, BytesComeBackAsTheyWere) {
    std::string everyByte;
    for (int value = 0; value < 256; ++value) everyByte += static_cast<char>(value);
    const std::string cases[] = {"",         "secret\n",           " blanks ", "schlüssel \U0001F511",
                                 "\xff\xfe", std::string(1, '\0'), everyByte,  std::string(100'000, 'x')};
    for (const std::string& bytes : cases) {
        EXPECT_EQ(this->items().add("Vesk", "A", bytes), KeychainStatus::success) << bytes.size();
        this->expectBytes("Vesk", "A", bytes);
        EXPECT_EQ(this->items().update("Vesk", "A", bytes + "!"), KeychainStatus::success) << bytes.size();
        this->expectBytes("Vesk", "A", bytes + "!");
        EXPECT_EQ(this->items().remove("Vesk", "A"), KeychainStatus::success) << bytes.size();
    }
}

TYPED_TEST_P(KeychainContract, ServicesAndAccountsAreApart) {
    EXPECT_EQ(this->items().add("Vesk", "A", "1"), KeychainStatus::success);
    EXPECT_EQ(this->items().add("Vesk", "B", "2"), KeychainStatus::success);
    EXPECT_EQ(this->items().add("Other", "A", "3"), KeychainStatus::success);
    EXPECT_EQ(this->items().copy("vesk", "A").status, KeychainStatus::itemNotFound) << "case counts";
    EXPECT_EQ(this->items().copy("Vesk", "").status, KeychainStatus::itemNotFound) << "an empty account is an account";
    EXPECT_EQ(this->items().update("Vesk", "A", "4"), KeychainStatus::success);
    EXPECT_EQ(this->items().remove("Vesk", "B"), KeychainStatus::success);
    this->expectBytes("Vesk", "A", "4");
    this->expectBytes("Other", "A", "3");
}

TYPED_TEST_P(KeychainContract, RemovingAllLeavesOtherServicesAlone) {
    for (const char* account : {"A", "B", "ü ber/\"'"})
        EXPECT_EQ(this->items().add("Vesk Release Rehearsal 1", account, "x"), KeychainStatus::success);
    EXPECT_EQ(this->items().add("Vesk", "A", "live"), KeychainStatus::success);
    EXPECT_EQ(this->items().removeAll("Vesk Release Rehearsal 1"), KeychainStatus::success);
    EXPECT_EQ(this->items().find("Vesk Release Rehearsal 1", "B"), KeychainStatus::itemNotFound);
    EXPECT_EQ(this->items().removeAll("Vesk Release Rehearsal 1"), KeychainStatus::itemNotFound);
    this->expectBytes("Vesk", "A", "live");
}

TYPED_TEST_P(KeychainContract, ManyThreadsUseItAtOnce) {
    std::atomic<int> added = 0;
    onThreads(6, [&](std::size_t thread) {
        const std::string own = "A" + std::to_string(thread);
        EXPECT_EQ(this->items().add("Vesk", own, "first"), KeychainStatus::success);
        EXPECT_EQ(this->items().update("Vesk", own, own), KeychainStatus::success);
        this->expectBytes("Vesk", own, own);
        if (this->items().add("Vesk", "shared", own) == KeychainStatus::success) ++added;
    });
    EXPECT_EQ(added, 1) << "all others are told of the duplicate";
    for (int thread = 0; thread < 6; ++thread)
        this->expectBytes("Vesk", "A" + std::to_string(thread), "A" + std::to_string(thread));
}

REGISTER_TYPED_TEST_SUITE_P(KeychainContract, WhatIsNotThereIsNotFound, WhatIsAddedCanBeFoundReadChangedAndRemoved,
                            AddingTwiceIsADuplicateThatChangesNothing, BytesComeBackAsTheyWere,
                            ServicesAndAccountsAreApart, RemovingAllLeavesOtherServicesAlone, ManyThreadsUseItAtOnce);

} // namespace vesk::test
