#pragma once

#include "VeskPlatform/InputEvents.hpp"

#include <cstdint>
#include <gtest/gtest.h>

namespace vesk::test {

/// What every InputEvents owes. `World` has `events()`.
template <class World> class InputEventsContract : public ::testing::Test {
protected:
    World world;
    InputEvents& events = world.events();
};

TYPED_TEST_SUITE_P(InputEventsContract);

TYPED_TEST_P(InputEventsContract, EachKindOfMouseEventIsMadeAndPosted) {
    for (const MouseEventType type : {MouseEventType::moved, MouseEventType::leftDown, MouseEventType::leftUp,
                                      MouseEventType::rightDown, MouseEventType::rightUp}) {
        const bool isRight = type == MouseEventType::rightDown || type == MouseEventType::rightUp;
        const auto event = this->events.create(MouseEvent{type, {3, 4}, isRight ? 1U : 0U});
        ASSERT_NE(event, nullptr);
        this->events.post(*event);
    }
}

TYPED_TEST_P(InputEventsContract, EachKeyIsMadeAndPostedWithAllModifiers) {
    static constexpr std::uint16_t codes[]{36, 48, 49, 51, 53, 123, 124, 125, 126};
    for (const std::uint16_t code : codes) {
        for (const bool isDown : {true, false}) {
            const auto event =
                this->events.create(KeyboardEvent{.keyCode = code, .keyDown = isDown, .flags = 0x1E0000});
            ASSERT_NE(event, nullptr) << code;
            this->events.post(*event);
        }
    }
}

TYPED_TEST_P(InputEventsContract, EachUnitIsMadeAndPosted) {
    for (const char16_t unit : {u'a', u'\n', u'\t', u'\u00DF', u'\u4E2D', char16_t(0xD83D), char16_t(0xDE00)}) {
        for (const bool isDown : {true, false}) {
            const auto event = this->events.create(KeyboardEvent{.keyDown = isDown, .unit = unit});
            ASSERT_NE(event, nullptr) << int(unit);
            this->events.post(*event);
        }
    }
}

TYPED_TEST_P(InputEventsContract, AnEventCanBePostedTwice) {
    const auto event = this->events.create(MouseEvent{MouseEventType::moved, {3, 4}, 0});
    ASSERT_NE(event, nullptr);
    this->events.post(*event);
    this->events.post(*event);
}

REGISTER_TYPED_TEST_SUITE_P(InputEventsContract, EachKindOfMouseEventIsMadeAndPosted,
                            EachKeyIsMadeAndPostedWithAllModifiers, EachUnitIsMadeAndPosted, AnEventCanBePostedTwice);

} // namespace vesk::test
