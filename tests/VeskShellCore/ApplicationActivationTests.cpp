#include "VeskShellCore/ApplicationActivation.hpp"

#include "tests/VeskShellCore/ControlFailure.hpp"
#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using namespace std::chrono_literals;

RunningApplication named(std::int32_t process, std::optional<std::string> identifier, std::optional<std::string> name) {
    return {.processIdentifier = process, .bundleIdentifier = std::move(identifier), .localizedName = std::move(name)};
}

class ApplicationActivation : public ::testing::Test {
protected:
    FakePlatform platform;
    FakeRunningApplications& applications = platform.fakeDesktop.applications;

    std::int32_t found(const std::string& request) { return findRunningApp(applications, request).processIdentifier; }
    std::string notFound(const std::string& request) {
        return controlFailureOf([&] { findRunningApp(applications, request); });
    }
    bool wait(const RunningApplication& application, std::chrono::milliseconds timeout = 1000ms) {
        return runTask(waitForFrontmostApp(platform, application, timeout));
    }
    bool launch(const RunningApplication& application) {
        return runTask(launchApplicationViaOpen(applications, application));
    }
};

TEST_F(ApplicationActivation, ExactOutranksPartialAndAnIdentifierAName) {
    applications.all = {named(1, "org.mailer.more", "The Mail Reader"), named(2, "org.other", "xMailx"),
                        named(3, "org.third", "MAIL"), named(4, "Mail", "Post")};
    EXPECT_EQ(found("mAiL"), 4) << "an identifier";
    applications.all.pop_back();
    EXPECT_EQ(found("mAiL"), 3) << "a name, though an identifier before it contains the text";
    applications.all.pop_back();
    EXPECT_EQ(found("mAiL"), 1) << "a part of an identifier";
    applications.all.front().bundleIdentifier.reset();
    EXPECT_EQ(found("mAiL"), 1) << "a part of a name, the first in order";
    EXPECT_EQ(found("xm"), 2);
}

TEST_F(ApplicationActivation, OfEqualMatchesTheFirstCounts) {
    applications.all = {named(1, "org.b", "B"), named(2, "org.a", "A"), named(3, "org.a", "A")};
    for (const char* request : {"org.a", "a", "g.a"}) EXPECT_EQ(found(request), 2) << request;
}

TEST_F(ApplicationActivation, CaseIsThatOfAnyScript) {
    applications.all = {named(1, std::nullopt, "\u00c4rger")};
    EXPECT_EQ(found("\u00e4RG"), 1);
}

TEST_F(ApplicationActivation, WhatEndedOrHasNoInterfaceIsNeverMatched) {
    applications.all = {named(1, "org.editor", "Editor"), named(2, "org.editor", "Editor")};
    applications.all[0].isTerminated = true;
    applications.all[1].hasUserInterface = false;
    EXPECT_EQ(notFound("Editor"),
              "90 No running macOS application matched `Editor`. Use the visible app name or bundle "
              "id.");
}

TEST_F(ApplicationActivation, WithoutNameAndIdentifierNothingMatches) {
    applications.all = {named(1, std::nullopt, std::nullopt)};
    EXPECT_EQ(notFound("x"), "90 No running macOS application matched `x`. Use the visible app name or bundle id.");
}

TEST_F(ApplicationActivation, AnApplicationIsInFrontByItsProcessOrItsIdentifier) {
    struct Case {
        const char* name;
        RunningApplication asked;
        std::optional<RunningApplication> front;
        bool seen;
    };
    const Case cases[] = {
        {"same process", named(7, "a", "A"), named(7, "b", "B"), true},
        {"same process without identifiers", named(7, std::nullopt, {}), named(7, std::nullopt, {}), true},
        {"same identifier", named(7, "a", "A"), named(8, "a", "B"), true},
        {"same identifier but for case", named(7, "a", "A"), named(8, "A", "A"), false},
        {"empty identifiers", named(7, "", "A"), named(8, "", "A"), false},
        {"no identifier asked for", named(7, std::nullopt, "A"), named(8, "a", "A"), false},
        {"no identifier in front", named(7, "a", "A"), named(8, std::nullopt, "A"), false},
        {"no identifiers", named(7, std::nullopt, "A"), named(8, std::nullopt, "A"), false},
        {"nothing in front", named(7, "a", "A"), std::nullopt, false},
    };
    for (const Case& expected : cases) {
        applications.front = expected.front;
        EXPECT_EQ(wait(expected.asked), expected.seen) << expected.name;
    }
}

TEST_F(ApplicationActivation, WaitingLooksEveryTenthOfASecondUntilTheDeadline) {
    EXPECT_FALSE(wait(named(9, "x", "X"), 250ms));
    EXPECT_EQ(applications.asked, 3) << "at 0, 100 and 200 ms";
    EXPECT_EQ(platform.fakeSleeper.slept, (std::vector<std::chrono::milliseconds>{100ms, 100ms, 100ms}));
}

TEST_F(ApplicationActivation, WaitingEndsWithTheFirstMatch) {
    platform.fakeSleeper.whenAwake = [&] {
        if (platform.fakeSleeper.slept.size() == 2) applications.front = named(9, "x", "X");
    };
    EXPECT_TRUE(wait(named(9, "x", "X")));
    EXPECT_EQ(applications.asked, 3);
}

TEST_F(ApplicationActivation, ATimeOfZeroIsOverWithoutALook) {
    EXPECT_FALSE(wait(*applications.front, 0ms));
    EXPECT_EQ(applications.asked, 0);
}

TEST_F(ApplicationActivation, AnInterruptedSleepOnlyShortensTheWait) {
    platform.fakeSleeper.whenAwake = [] { throw std::runtime_error("interrupted"); };
    EXPECT_FALSE(wait(named(9, "x", "X"), 250ms));
    EXPECT_EQ(applications.asked, 3);
}

TEST_F(ApplicationActivation, TheOpenerIsToldTheFirstThingKnown) {
    RunningApplication application = named(1, "org.editor", "Editor");
    application.bundlePath = "/apps/editor.desktop";
    EXPECT_TRUE(launch(application));
    application.bundleIdentifier = "";
    EXPECT_TRUE(launch(application));
    application.bundlePath.reset();
    EXPECT_TRUE(launch(application));
    EXPECT_EQ(applications.opened, (std::vector<std::vector<std::string>>{
                                       {"-b", "org.editor"}, {"-a", "/apps/editor.desktop"}, {"-a", "Editor"}}));
    application.localizedName = "";
    EXPECT_FALSE(launch(application));
    EXPECT_EQ(applications.opened.size(), 3U) << "nothing is started for an application of which nothing is known";
}

TEST_F(ApplicationActivation, OnlyTheStatusZeroIsASuccess) {
    for (const int status : {1, 127, -1}) {
        applications.openerStatus = status;
        EXPECT_FALSE(launch(named(1, "a", "A"))) << status;
    }
}

} // namespace
} // namespace vesk::test
