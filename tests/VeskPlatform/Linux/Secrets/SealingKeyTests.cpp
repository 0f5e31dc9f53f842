#include "VeskPlatform/Linux/Secrets/SealingKey.hpp"

#include "VeskPlatform/KeychainItems.hpp"
#include "VeskPlatform/Linux/Secrets/KeychainFailure.hpp"
#include "VeskPlatform/Linux/Secrets/SealedItems.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

const std::string keyBytes(SealingKey::size, 'k');

TEST(SealingKeyTests, OpensWhatItSealed) {
    const SealingKey key(keyBytes);
    for (const std::string& bytes : {std::string(), std::string("secret"), std::string(1000, '\0')}) {
        const std::string sealed = key.seal("context", bytes);
        EXPECT_EQ(SealingKey(keyBytes).unseal("context", sealed), bytes);
        EXPECT_EQ(sealed.size(), bytes.size() + 24 + 16);
    }
}

TEST(SealingKeyTests, EachSealingHasANonceOfItsOwn) {
    const SealingKey key(keyBytes);
    EXPECT_NE(key.seal("c", "secret").substr(0, 24), key.seal("c", "secret").substr(0, 24));
}

TEST(SealingKeyTests, EveryChangeIsFound) {
    const SealingKey key(keyBytes);
    const std::string sealed = key.seal("context", "secret");
    for (std::size_t i = 0; i < sealed.size(); ++i) {
        std::string changed = sealed;
        changed[i] = static_cast<char>(changed[i] ^ 1);
        EXPECT_EQ(key.unseal("context", changed), std::nullopt) << i;
        EXPECT_EQ(key.unseal("context", sealed.substr(0, i)), std::nullopt) << i;
    }
    EXPECT_EQ(key.unseal("other", sealed), std::nullopt);
    EXPECT_EQ(SealingKey(std::string(SealingKey::size, 'x')).unseal("context", sealed), std::nullopt);
}

TEST(SealingKeyTests, NamesThatRunTogetherAreApart) {
    EXPECT_NE(contextOf("ab", "c"), contextOf("a", "bc"));
    EXPECT_NE(contextOf("", "abc"), contextOf("abc", ""));
    const std::string zeros(7, '\0');
    EXPECT_EQ(contextOf("ab", "c"), "\2" + zeros + "ab" + "\1" + zeros + "c")
        << "files of former versions stay readable";
}

TEST(SealingKeyTests, APassphraseWithTheSameCostIsTheSameKey) {
    const PassphraseCost cost = PassphraseCost::ofNewStore();
    const std::string sealed = SealingKey("a passphrase", cost).seal("c", "secret");
    EXPECT_EQ(SealingKey("a passphrase", cost).unseal("c", sealed), "secret");
    EXPECT_EQ(SealingKey("A passphrase", cost).unseal("c", sealed), std::nullopt);
    EXPECT_EQ(SealingKey("a passphrase", PassphraseCost::ofNewStore()).unseal("c", sealed), std::nullopt);
}

TEST(SealingKeyTests, CostsThatNobodyMeansAreRefused) {
    const PassphraseCost sensible = PassphraseCost::ofNewStore();
    const std::pair<const char*, PassphraseCost> cases[] = {
        {"salt", {sensible.salt + "x", sensible.operations, sensible.memory}},
        {"no salt", {"", sensible.operations, sensible.memory}},
        {"no operations", {sensible.salt, 0, sensible.memory}},
        {"too many operations", {sensible.salt, 1'000'000, sensible.memory}},
        {"no memory", {sensible.salt, sensible.operations, 0}},
        {"too little memory", {sensible.salt, sensible.operations, 8192}},
        {"too much memory", {sensible.salt, sensible.operations, std::int64_t{1} << 40}},
    };
    for (const auto& [name, cost] : cases) {
        try {
            const SealingKey key("a passphrase", cost);
            FAIL() << name;
        } catch (const KeychainFailure& failure) {
            EXPECT_EQ(failure.status, KeychainStatus::decode) << name;
        }
    }
}

TEST(SealingKeyTests, AKeyOfAnotherLengthIsRefused) {
    EXPECT_THROW(SealingKey(std::string(31, 'k')), KeychainFailure);
    EXPECT_THROW(SealingKey(std::string()), KeychainFailure);
}

} // namespace
} // namespace vesk
