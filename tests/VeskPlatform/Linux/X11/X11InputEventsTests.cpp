#include "tests/VeskPlatform/Linux/X11/TestWindow.hpp"
#include "tests/VeskPlatform/Linux/X11/X11World.hpp"

#include <algorithm>
#include <csignal>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>
#include <xkbcommon/xkbcommon-x11.h>

namespace vesk::test {
namespace {

using ::testing::ElementsAre;

/// A window over the whole screen that notes what comes.
class X11InputEventsTests : public X11World {
protected:
    void SetUp() override {
        window = program.show({.isManaged = false, .x = 0, .y = 0, .width = 800, .height = 600});
        xcb_set_input_focus(program.connection.get(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
        program.connection.synchronize();
    }

    template <class Event> void post(const Event& event) {
        const auto prepared = session->inputEvents().create(event);
        ASSERT_NE(prepared, nullptr);
        session->inputEvents().post(*prepared);
    }
    template <class Condition> void await(Condition condition) {
        eventually("an event", [&] {
            program.connection.synchronize();
            program.connection.dispatchEvents();
            return condition();
        });
    }

    TestProgram program{desktop->display()};
    xcb_window_t window = 0;
};

TEST_F(X11InputEventsTests, ClicksLandOnTheNearestPixelWithTheirButton) {
    struct Case {
        ScreenPoint point;
        std::uint32_t button;
        TestProgram::Press expected;
    };
    const Case cases[]{{{0, 0}, 0, {1, 0, 0}},         {{123, 45}, 1, {3, 123, 45}},   {{10.4, 20.6}, 0, {1, 10, 21}},
                       {{799, 599}, 0, {1, 799, 599}}, {{800, 600}, 1, {3, 799, 599}}, {{-5, -7.5}, 0, {1, 0, 0}},
                       {{1e9, -1e9}, 0, {1, 799, 0}}};
    for (const Case& each : cases) {
        program.presses.clear();
        const bool isLeft = each.button == 0;
        post(MouseEvent{MouseEventType::moved, each.point, each.button});
        post(MouseEvent{isLeft ? MouseEventType::leftDown : MouseEventType::rightDown, each.point, each.button});
        post(MouseEvent{isLeft ? MouseEventType::leftUp : MouseEventType::rightUp, each.point, each.button});
        await([&] { return !program.presses.empty(); });
        EXPECT_THAT(program.presses, ElementsAre(each.expected)) << each.point.x << "," << each.point.y;
    }
}

TEST_F(X11InputEventsTests, MovingPressesNothing) {
    post(MouseEvent{MouseEventType::moved, {1, 1}, 0});
    post(MouseEvent{MouseEventType::moved, {300, 200}, 1});
    await([&] { return !program.motions.empty() && program.motions.back() == std::pair(300, 200); });
    EXPECT_THAT(program.presses, ElementsAre());
}

TEST_F(X11InputEventsTests, AnotherButtonCannotBePressed) {
    EXPECT_EQ(session->inputEvents().create(MouseEvent{MouseEventType::leftDown, {}, 2}), nullptr);
}

TEST_F(X11InputEventsTests, KeysComeWithTheirModifiers) {
    constexpr int shift = 1, control = 4, alt = 8, super = 64;
    struct Case {
        std::uint16_t code;
        std::uint32_t flags;
        const char* name;
        int state;
    };
    const Case cases[]{{36, 0, "Return", 0},
                       {48, 0x20000, "Tab", shift},
                       {49, 0x40000, "space", control},
                       {51, 0x80000, "BackSpace", alt},
                       {53, 0x100000, "Escape", super},
                       {123, 0x20000 | 0x40000, "Left", shift | control},
                       {124, 0x20000 | 0x40000 | 0x80000 | 0x100000, "Right", shift | control | alt | super},
                       {125, 0, "Down", 0},
                       {126, 0, "Up", 0}};
    xkb_x11_setup_xkb_extension(program.connection.get(), 1, 0, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr,
                                nullptr, nullptr);
    X11Keymap keymap(program.connection, xkb_x11_get_core_keyboard_device_id(program.connection.get()));
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        program.keys.clear();
        post(KeyboardEvent{.keyCode = each.code, .keyDown = true, .flags = each.flags});
        post(KeyboardEvent{.keyCode = each.code, .keyDown = false, .flags = each.flags});
        const auto key = keymap.keyFor(xkb_keysym_from_name(each.name, XKB_KEYSYM_NO_FLAGS));
        ASSERT_TRUE(key);
        await([&] { return !program.keys.empty() && program.keys.back().first == *key; });
        EXPECT_EQ(program.keys.back().second, each.state);
    }
}

TEST_F(X11InputEventsTests, ModifiersAreUpAfterwards) {
    post(KeyboardEvent{.keyCode = 36, .keyDown = true, .flags = 0x1E0000});
    post(KeyboardEvent{.keyCode = 36, .keyDown = false, .flags = 0x1E0000});
    await([&] { return program.keys.size() == 4 + 1; });
    post(KeyboardEvent{.keyCode = 36, .keyDown = true});
    post(KeyboardEvent{.keyCode = 36, .keyDown = false});
    await([&] { return program.keys.size() == 4 + 1 + 1; });
    EXPECT_EQ(program.keys.back().second, 0);
}

TEST_F(X11InputEventsTests, AKeyThatIsDownAtTheEndIsLetGoOf) {
    post(KeyboardEvent{.keyCode = 36, .keyDown = true, .flags = 0x20000});
    session.reset();
    const auto keys = program.connection.answer<xcb_query_keymap_reply_t>(xcb_query_keymap(program.connection.get()));
    ASSERT_NE(keys, nullptr);
    for (const std::uint8_t byte : keys->keys) EXPECT_EQ(byte, 0);
}

TEST_F(X11InputEventsTests, WhatIsDownIsLetGoOfForAProcessThatIsKilled) {
    const auto isSomethingDown = [this] {
        auto& connection = program.connection;
        const auto keys = connection.answer<xcb_query_keymap_reply_t>(xcb_query_keymap(connection.get()));
        const auto pointer = connection.answer<xcb_query_pointer_reply_t>(xcb_query_pointer(connection.get(), window));
        return (pointer->mask & XCB_BUTTON_MASK_1) != 0
               || std::ranges::any_of(keys->keys, [](std::uint8_t byte) { return byte != 0; });
    };
    const std::function<void(InputEvents&)> strokes[]{
        [](InputEvents& events) {
            events.post(*events.create(KeyboardEvent{.keyCode = 49, .keyDown = true, .flags = 0x60000}));
        },
        [](InputEvents& events) {
            events.post(*events.create(MouseEvent{MouseEventType::leftDown, {300, 200}, 0}));
        }};
    for (const auto& stroke : strokes) {
        const pid_t child = ::fork();
        if (child == 0) {
            const auto own = connect(environment);
            stroke(own->inputEvents());
            ::pause();
        }
        eventually("something held down", isSomethingDown);
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        EXPECT_NO_THROW(eventually("nothing held down", [&] { return !isSomethingDown(); }));
    }
}

} // namespace
} // namespace vesk::test
