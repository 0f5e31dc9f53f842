#include "VeskShellCore/InputSynthesis.hpp"

#include "tests/VeskShellCore/ControlFailure.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/fakes/FakeInputEvents.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

/// What was posted and slept, in one order: "mouse TYPE X,Y BUTTON", "key CODE down FLAGS", "unit U up", "sleep 12".
class InputSynthesis : public ::testing::Test {
protected:
    FakeMonotonicClock clock;
    FakeSleeper sleeper{clock};
    FakeInputEvents events;
    std::vector<std::string> timeline;

    void SetUp() override {
        events.whenPosted = [this](const AnyInputEvent& event) {
            timeline.push_back(std::visit([](const auto& posted) { return described(posted); }, event));
        };
        sleeper.whenAwake = [this] { timeline.push_back("sleep " + std::to_string(sleeper.slept.back().count())); };
    }
    void clickAtTwoThree(CapabilityMouseButton button) { runTask(clickAt(events, sleeper, {2.5, -3}, button)); }

    static std::string described(const MouseEvent& event) {
        return "mouse " + std::to_string(static_cast<int>(event.type)) + " " + std::to_string(event.point.x) + ","
               + std::to_string(event.point.y) + " " + std::to_string(event.button);
    }
    static std::string described(const KeyboardEvent& event) {
        const std::string direction = event.keyDown ? " down" : " up";
        if (!event.unit) return "key " + std::to_string(event.keyCode) + direction + " " + std::to_string(event.flags);
        EXPECT_EQ(event.keyCode, 0);
        EXPECT_EQ(event.flags, 0U);
        return "unit " + std::to_string(static_cast<int>(*event.unit)) + direction;
    }
};

using Timeline = std::vector<std::string>;

TEST_F(InputSynthesis, AClickMovesPressesWaitsAndLetsGo) {
    clickAtTwoThree(CapabilityMouseButton::left);
    EXPECT_EQ(timeline, (Timeline{"mouse 5 2.500000,-3.000000 0", "mouse 1 2.500000,-3.000000 0", "sleep 12",
                                  "mouse 2 2.500000,-3.000000 0"}));
}

TEST_F(InputSynthesis, AClickOfTheRightButtonMovesAsTheRightButton) {
    clickAtTwoThree(CapabilityMouseButton::right);
    EXPECT_EQ(timeline, (Timeline{"mouse 5 2.500000,-3.000000 1", "mouse 3 2.500000,-3.000000 1", "sleep 12",
                                  "mouse 4 2.500000,-3.000000 1"}));
}

TEST_F(InputSynthesis, AClickThatCannotBeMadeWholeDoesNothing) {
    for (const std::size_t creatable : {0U, 1U, 2U}) {
        events.created = 0;
        events.creatable = creatable;
        EXPECT_EQ(controlFailureOf([&] { clickAtTwoThree(CapabilityMouseButton::left); }),
                  "81 Unable to synthesize mouse events for computer control.")
            << creatable;
    }
    EXPECT_EQ(timeline, Timeline{});
}

TEST_F(InputSynthesis, EachUnitGoesDownAndUpBeforeItsPause) {
    runTask(typeUnits(events, sleeper, u"a\n"));
    EXPECT_EQ(timeline, (Timeline{"unit 97 down", "unit 97 up", "sleep 6", "unit 10 down", "unit 10 up", "sleep 6"}));
}

TEST_F(InputSynthesis, ACharacterOfTwoUnitsGoesOutAsTwo) {
    runTask(typeUnits(events, sleeper, u"\U0001F600"));
    EXPECT_EQ(timeline,
              (Timeline{"unit 55357 down", "unit 55357 up", "sleep 6", "unit 56832 down", "unit 56832 up", "sleep 6"}));
}

TEST_F(InputSynthesis, WhatWasTypedBeforeAFailureStays) {
    const std::string failure = "83 Unable to synthesize keyboard events for text entry.";
    events.creatable = 3; // one key and a half
    EXPECT_EQ(controlFailureOf([&] { runTask(typeUnits(events, sleeper, u"ab")); }), failure);
    EXPECT_EQ(timeline, (Timeline{"unit 97 down", "unit 97 up", "sleep 6"}));
    events.creatable = events.created;
    EXPECT_EQ(controlFailureOf([&] { runTask(typeUnits(events, sleeper, u"c")); }), failure);
    EXPECT_EQ(timeline.size(), 3U);
}

TEST_F(InputSynthesis, AKeyIsHeldForAPauseWithItsFlags) {
    runTask(pressKeyCode(events, sleeper, 48, 0x20000));
    EXPECT_EQ(timeline, (Timeline{"key 48 down 131072", "sleep 8", "key 48 up 131072"}));
}

TEST_F(InputSynthesis, AKeyThatCannotBeMadeIsNotPressed) {
    for (const std::size_t creatable : {0U, 1U}) {
        events.created = 0;
        events.creatable = creatable;
        EXPECT_EQ(controlFailureOf([&] { runTask(pressKeyCode(events, sleeper, 48, 0)); }),
                  "84 Unable to synthesize keyboard shortcut events.")
            << creatable;
    }
    EXPECT_EQ(timeline, Timeline{});
}

} // namespace
} // namespace vesk::test
