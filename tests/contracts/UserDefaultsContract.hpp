#pragma once

#include "VeskPlatform/UserDefaults.hpp"
#include "tests/support/OnThreads.hpp"

#include <gtest/gtest.h>
#include <string>

namespace vesk::test {

/// What every UserDefaults owes. A `World` has `defaults()`, an empty store, and `again()`, another view of the same.
template <class World> class UserDefaultsContract : public ::testing::Test {
protected:
    World world;
    UserDefaults& defaults() { return world.defaults(); }
};

TYPED_TEST_SUITE_P(UserDefaultsContract);

TYPED_TEST_P(UserDefaultsContract, NothingIsThereAtFirst) {
    EXPECT_EQ(this->defaults().string("key"), std::nullopt);
    EXPECT_EQ(this->defaults().data("key"), std::nullopt);
    this->defaults().remove("key");
    EXPECT_EQ(this->defaults().string("key"), std::nullopt);
}

TYPED_TEST_P(UserDefaultsContract, KeepsStringsAndBytesAsTheyAre) {
    const std::string texts[] = {"text", "", " blanks \n", "\xC3\xA9 \xF0\x9F\x98\x80", std::string("a\0b", 3)};
    for (const std::string& text : texts) {
        this->defaults().setString("key", text);
        EXPECT_EQ(this->defaults().string("key"), text);
        EXPECT_EQ(this->world.again().string("key"), text);
        this->defaults().setData("bytes", text);
        EXPECT_EQ(this->world.again().data("bytes"), text);
    }
    const std::string bytes("\xFF\xFE\0\x01", 4);
    this->defaults().setData("bytes", bytes);
    EXPECT_EQ(this->defaults().data("bytes"), bytes);
    this->defaults().setData("bytes", std::string_view());
    EXPECT_EQ(this->defaults().data("bytes"), "");
}

TYPED_TEST_P(UserDefaultsContract, AStringIsNoBytesAndBytesAreNoString) {
    this->defaults().setString("text", "value");
    this->defaults().setData("bytes", "value");
    EXPECT_EQ(this->defaults().data("text"), std::nullopt);
    EXPECT_EQ(this->defaults().string("bytes"), std::nullopt);
    this->defaults().setData("text", "other");
    EXPECT_EQ(this->defaults().string("text"), std::nullopt);
    EXPECT_EQ(this->defaults().data("text"), "other");
}

TYPED_TEST_P(UserDefaultsContract, AKeyHasItsLastValueUntilItIsRemoved) {
    this->defaults().setString("key", "first");
    this->defaults().setString("other", "stays");
    this->defaults().setString("key", "second");
    EXPECT_EQ(this->defaults().string("key"), "second");
    this->defaults().remove("key");
    EXPECT_EQ(this->defaults().string("key"), std::nullopt);
    EXPECT_EQ(this->defaults().string("other"), "stays");
}

TYPED_TEST_P(UserDefaultsContract, KeysAreBytes) {
    this->defaults().setString("Key", "upper");
    this->defaults().setString("key", "lower");
    this->defaults().setString("", "empty");
    this->defaults().setString("k'ey\"; --", "quoted");
    EXPECT_EQ(this->defaults().string("Key"), "upper");
    EXPECT_EQ(this->defaults().string("key"), "lower");
    EXPECT_EQ(this->defaults().string(""), "empty");
    EXPECT_EQ(this->defaults().string("k'ey\"; --"), "quoted");
}

TYPED_TEST_P(UserDefaultsContract, ManyThreadsUseItAtOnce) {
    onThreads(8, [&](std::size_t thread) {
        const std::string own = "key " + std::to_string(thread);
        for (int i = 0; i < 20; ++i) {
            this->defaults().setString(own, std::to_string(i));
            this->defaults().setData("shared", own);
            EXPECT_EQ(this->defaults().string(own), std::to_string(i));
        }
        if (thread % 2 == 0) this->defaults().remove(own);
    });
    EXPECT_TRUE(this->defaults().data("shared").value_or("").starts_with("key "));
    for (const int even : {0, 2, 4, 6}) {
        EXPECT_EQ(this->defaults().string("key " + std::to_string(even)), std::nullopt);
        EXPECT_EQ(this->defaults().string("key " + std::to_string(even + 1)), "19");
    }
}

REGISTER_TYPED_TEST_SUITE_P(UserDefaultsContract, NothingIsThereAtFirst, KeepsStringsAndBytesAsTheyAre,
                            AStringIsNoBytesAndBytesAreNoString, AKeyHasItsLastValueUntilItIsRemoved, KeysAreBytes,
                            ManyThreadsUseItAtOnce);

} // namespace vesk::test
