#pragma once

#include "VeskPlatform/RunningApplications.hpp"
#include "tests/fakes/RunTask.hpp"

#include <algorithm>
#include <gtest/gtest.h>

namespace vesk::test {

/// What every RunningApplications owes. `World` has `applications()`, of which two run and one is in front; `settle()`
/// lets what was asked for happen; `startable` is an identifier that the opener knows.
template <class World> class RunningApplicationsContract : public ::testing::Test {
protected:
    World world;
    RunningApplications& applications = world.applications();
};

TYPED_TEST_SUITE_P(RunningApplicationsContract);

TYPED_TEST_P(RunningApplicationsContract, TheOneInFrontIsListed) {
    const auto all = this->applications.list();
    ASSERT_EQ(all.size(), 2U);
    const auto front = this->applications.frontmost();
    ASSERT_TRUE(front);
    EXPECT_EQ(std::ranges::count(all, *front), 1);
    EXPECT_EQ(this->applications.list(), all) << "the order stays";
}

TYPED_TEST_P(RunningApplicationsContract, WhatIsListedRunsAndHasAName) {
    for (const RunningApplication& each : this->applications.list()) {
        EXPECT_FALSE(each.isTerminated);
        EXPECT_TRUE(each.hasUserInterface);
        EXPECT_TRUE(each.localizedName.has_value());
        EXPECT_NE(each.processIdentifier, 0);
    }
}

TYPED_TEST_P(RunningApplicationsContract, AnActivatedOneComesToTheFront) {
    for (const RunningApplication& each : this->applications.list()) {
        EXPECT_TRUE(this->applications.activate(each));
        this->world.settle(each);
        EXPECT_EQ(this->applications.frontmost(), each);
    }
}

TYPED_TEST_P(RunningApplicationsContract, TheOpenerTellsItsStatus) {
    EXPECT_EQ(runTask(this->applications.runOpener({"-b", this->world.startable})), 0);
}

REGISTER_TYPED_TEST_SUITE_P(RunningApplicationsContract, TheOneInFrontIsListed, WhatIsListedRunsAndHasAName,
                            AnActivatedOneComesToTheFront, TheOpenerTellsItsStatus);

} // namespace vesk::test
