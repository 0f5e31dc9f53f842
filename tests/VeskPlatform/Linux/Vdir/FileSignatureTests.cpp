#include "VeskPlatform/Linux/Vdir/FileSignature.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using namespace vdir;

constexpr std::int64_t second = 1'000'000'000;

FileSignature writtenAt(std::int64_t nanoseconds) { return {1, nanoseconds, nanoseconds, 10}; }

TEST(FileSignatures, AreTrustedOnceTheClockHasMovedOn) {
    EXPECT_FALSE(isSettled(writtenAt(10 * second + 1), 10 * second + 1));
    EXPECT_FALSE(isSettled(writtenAt(10 * second + 1), 10 * second + 99'999'999));
    EXPECT_TRUE(isSettled(writtenAt(10 * second + 1), 10 * second + 100'000'001));
    EXPECT_FALSE(isSettled(writtenAt(11 * second + 1), 10 * second)); // a time ahead of the clock
}

TEST(FileSignatures, OfWholeSecondsNeedMoreTime) {
    EXPECT_FALSE(isSettled(writtenAt(10 * second), 12 * second));
    EXPECT_TRUE(isSettled(writtenAt(10 * second), 13 * second));
}

TEST(FileSignatures, ThatAreDistrustedMatchNone) {
    FileSignature signature = writtenAt(7);
    distrust(signature);
    EXPECT_NE(signature, writtenAt(7));
}

TEST(PlacesOfUnchanged, FollowTheInodeAndTheWholeSignature) {
    const std::vector<FileSignature> known{{1, 1, 1, 1}, {2, 1, 1, 1}, {3, 1, 1, 1}};
    EXPECT_EQ(placesOfUnchanged({{3, 1, 1, 1}, {4, 1, 1, 1}, {1, 1, 2, 1}, {2, 1, 1, 1}}, known),
              (std::vector<std::size_t>{2, notKnown, notKnown, 1}));
    EXPECT_TRUE(placesOfUnchanged({}, known).empty());
}

TEST(PlacesOfUnchanged, GiveEachPlaceOnce) {
    const std::vector<FileSignature> known{{1, 1, 1, 1}};
    EXPECT_EQ(placesOfUnchanged({{1, 1, 1, 1}, {1, 1, 1, 1}}, known), (std::vector<std::size_t>{0, notKnown}));
}

} // namespace
} // namespace vesk::test
