#pragma once

#include "VeskPlatform/Displays.hpp"

#include <gtest/gtest.h>
#include <set>

namespace vesk::test {

/// What every Displays owes. `World` has two displays, `displays()` and an `unknown` identifier.
template <class World> class DisplaysContract : public ::testing::Test {
protected:
    World world;
    Displays& displays = world.displays();
};

TYPED_TEST_SUITE_P(DisplaysContract);

TYPED_TEST_P(DisplaysContract, TheListHasAsManyAsAreCountedEachOnce) {
    ASSERT_EQ(this->displays.count(), 2U);
    const auto all = this->displays.list(2);
    ASSERT_TRUE(all);
    EXPECT_EQ(std::set(all->begin(), all->end()).size(), 2U);
    EXPECT_EQ(this->displays.list(10), all) << "a larger capacity adds nothing, and the order stays";
}

TYPED_TEST_P(DisplaysContract, TheCapacityLimitsTheListToItsFirst) {
    const auto all = this->displays.list(2), one = this->displays.list(1), none = this->displays.list(0);
    ASSERT_TRUE(all && one && none);
    ASSERT_EQ(one->size(), 1U);
    EXPECT_EQ(one->front(), all->front());
    EXPECT_TRUE(none->empty());
}

TYPED_TEST_P(DisplaysContract, EachHasAPlaceAndAPicture) {
    const auto all = this->displays.list(2);
    ASSERT_TRUE(all);
    for (const DisplayIdentifier each : *all) {
        const ScreenRectangle place = this->displays.bounds(each);
        EXPECT_GT(place.width, 0);
        EXPECT_GT(place.height, 0);
        const auto picture = this->displays.capture(each);
        ASSERT_NE(picture, nullptr);
        EXPECT_NEAR(double(picture->width()) / double(picture->height()), place.width / place.height, 0.01);
    }
}

TYPED_TEST_P(DisplaysContract, OneThatIsGoneHasNeither) {
    EXPECT_EQ(this->displays.bounds(this->world.unknown), ScreenRectangle{});
    EXPECT_EQ(this->displays.capture(this->world.unknown), nullptr);
}

REGISTER_TYPED_TEST_SUITE_P(DisplaysContract, TheListHasAsManyAsAreCountedEachOnce, TheCapacityLimitsTheListToItsFirst,
                            EachHasAPlaceAndAPicture, OneThatIsGoneHasNeither);

} // namespace vesk::test
