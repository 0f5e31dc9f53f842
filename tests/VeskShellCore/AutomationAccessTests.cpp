#include "VeskShellCore/AutomationAccess.hpp"

#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using Strings = std::vector<std::string>;
const std::string app = "app.id";
const std::string ask = "ask app.id", launch = "launch app.id by /usr/bin/open -b app.id";

class AutomationAccess : public ::testing::Test {
protected:
    FakePlatform platform;
    FakeAutomation& automation = platform.fakeAutomation;

    AutomationResult requested() { return runTask(requestAutomation(platform, app)); }
};

TEST_F(AutomationAccess, ThePermissionIsThePlatformsAnswer) {
    for (const int result : {0, -1744, -1743, -600, -50, 7}) {
        automation.results[app] = result;
        EXPECT_EQ(automationPermission(platform, app), result);
    }
    automation.results.clear();
    EXPECT_EQ(automationPermission(platform, app), -600) << "what cannot be described was not found";
    EXPECT_TRUE(automation.calls.empty());
}

TEST_F(AutomationAccess, ARequestAsksOnceWhereTheApplicationWasFound) {
    for (const int result : {0, -1743, -1744, -50}) {
        automation.calls.clear();
        automation.results[app] = result;
        EXPECT_EQ(requested(), result);
        EXPECT_EQ(automation.calls, Strings{ask}) << result;
    }
    EXPECT_TRUE(platform.fakeSleeper.slept.empty());
}

TEST_F(AutomationAccess, AnApplicationThatDoesNotRunIsLaunchedAndAskedAgain) {
    automation.results[app] = -600;
    automation.onLaunch = [](FakeAutomation& self, const std::string& id) { self.results[id] = 0; };
    EXPECT_EQ(requested(), 0);
    EXPECT_EQ(automation.calls, (Strings{ask, launch, ask}));
    EXPECT_EQ(platform.fakeSleeper.slept, std::vector{std::chrono::milliseconds(500)});
}

TEST_F(AutomationAccess, OneThatCannotBeDescribedIsLaunchedToo) {
    automation.onLaunch = [](FakeAutomation& self, const std::string& id) { self.results[id] = -1743; };
    EXPECT_EQ(requested(), -1743);
    EXPECT_EQ(automation.calls, (Strings{ask, launch, ask}));
}

TEST_F(AutomationAccess, ALaunchThatChangesNothingIsToldByTheSecondAnswer) {
    automation.onLaunch = [](FakeAutomation&, const std::string&) {};
    EXPECT_EQ(requested(), -600);
    EXPECT_EQ(automation.calls, (Strings{ask, launch, ask}));
}

TEST_F(AutomationAccess, WhatRunsIsNotLaunchedAgain) {
    automation.results[app] = -600;
    automation.running = {app};
    EXPECT_EQ(requested(), -600);
    EXPECT_EQ(automation.calls, (Strings{ask, ask}));
    EXPECT_TRUE(platform.fakeSleeper.slept.empty());
}

} // namespace
} // namespace vesk::test
