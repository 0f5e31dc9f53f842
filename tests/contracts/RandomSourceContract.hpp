#pragma once

#include "VeskPlatform/RandomSource.hpp"
#include "tests/support/OnThreads.hpp"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <vector>

namespace vesk::test {

/// What every RandomSource owes. `Source` is made anew for each test.
template <class Source> class RandomSourceContract : public ::testing::Test {
protected:
    Source source;
    std::vector<std::uint8_t> filled(std::size_t count) {
        std::vector<std::uint8_t> bytes(count);
        source.fill(bytes);
        return bytes;
    }
};

TYPED_TEST_SUITE_P(RandomSourceContract);

TYPED_TEST_P(RandomSourceContract, FillsAllOfAnyLength) {
    this->filled(0);
    for (const std::size_t count : {std::size_t{1}, std::size_t{33}, std::size_t{1000}}) {
        std::vector<std::uint8_t> seen(count);
        for (int round = 0; round < 20; ++round)
            std::ranges::transform(seen, this->filled(count), seen.begin(),
                                   [](auto a, auto b) { return static_cast<std::uint8_t>(a | b); });
        EXPECT_TRUE(std::ranges::none_of(seen, [](auto byte) { return byte == 0; })) << count;
    }
}

TYPED_TEST_P(RandomSourceContract, NothingBeyondTheBytesIsTouched) {
    std::vector<std::uint8_t> bytes(64);
    this->source.fill(std::span(bytes).subspan(16, 32));
    EXPECT_TRUE(std::all_of(bytes.begin(), bytes.begin() + 16, [](auto byte) { return byte == 0; }));
    EXPECT_TRUE(std::all_of(bytes.end() - 16, bytes.end(), [](auto byte) { return byte == 0; }));
}

TYPED_TEST_P(RandomSourceContract, UuidsAreOfVersionFourAndDiffer) {
    std::set<Uuid> seen;
    for (int i = 0; i < 10; ++i) {
        const Uuid uuid = randomUuid(this->source);
        EXPECT_EQ(uuid.text()[14], '4') << uuid.text();
        EXPECT_NE(std::string("89AB").find(uuid.text()[19]), std::string::npos) << uuid.text();
        seen.insert(uuid);
    }
    EXPECT_EQ(seen.size(), 10U);
}

TYPED_TEST_P(RandomSourceContract, ManyThreadsFillAtOnce) {
    std::vector<std::vector<Uuid>> made(4);
    onThreads(made.size(), [&](std::size_t thread) {
        for (int i = 0; i < 4; ++i) made[thread].push_back(randomUuid(this->source));
    });
    std::set<Uuid> seen;
    for (const auto& ofOneThread : made) seen.insert(ofOneThread.begin(), ofOneThread.end());
    EXPECT_EQ(seen.size(), 4U * 4U) << "each of its own";
}

REGISTER_TYPED_TEST_SUITE_P(RandomSourceContract, FillsAllOfAnyLength, NothingBeyondTheBytesIsTouched,
                            UuidsAreOfVersionFourAndDiffer, ManyThreadsFillAtOnce);

} // namespace vesk::test
