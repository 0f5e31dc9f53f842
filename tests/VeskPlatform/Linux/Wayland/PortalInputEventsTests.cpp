#include "VeskPlatform/Linux/Wayland/PortalInputEvents.hpp"

#include "tests/VeskPlatform/Linux/Wayland/PortalWorld.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace vesk::test {
namespace {

/// Two monitors side by side, the left one at negative places.
class PortalInputEventsTests : public PortalWorld {
protected:
    TemporaryFolder folder;
    RestoreToken token{folder / "state"};
    std::optional<PortalInputEvents> events;

    void SetUp() override {
        desktop.streams = {{.node = 41, .position = {{0, 0}}, .size = {{800, 600}}},
                           {.node = 42, .position = {{-400, 100}}, .size = {{400, 300}}}};
        events.emplace(portal, token);
    }
    template <class Event> bool post(const Event& event) {
        const auto prepared = events->create(event);
        if (prepared) events->post(*prepared);
        return prepared != nullptr;
    }
    void type(char16_t unit) {
        post(KeyboardEvent{.keyDown = true, .unit = unit});
        post(KeyboardEvent{.keyDown = false, .unit = unit});
    }
    /// The calls since the session began, or since the last time.
    Lines input() {
        Lines lines = desktop.calls();
        const std::size_t known = std::exchange(seen_, lines.size());
        lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(known));
        std::erase_if(lines, [](const std::string& line) { return !line.starts_with("Notify"); });
        return lines;
    }

private:
    std::size_t seen_ = 0;
};

const KeyboardEvent tabDown{.keyCode = 48, .keyDown = true};

TEST_F(PortalInputEventsTests, TheSessionStartsWithTheFirstEventAndEndsWithTheObject) {
    desktop.restoreToken = "next";
    serve();
    EXPECT_EQ(desktop.calls(), Lines{});
    EXPECT_NE(events->create(tabDown), nullptr);
    EXPECT_NE(events->create(tabDown), nullptr);
    const Lines begun{"CreateSession", "SelectDevices persist_mode=2 types=3", "SelectSources multiple=true types=1",
                      "Start"};
    EXPECT_EQ(desktop.calls(), begun);
    events.reset();
    EXPECT_EQ(desktop.calls().back(), "Close session");
}

TEST_F(PortalInputEventsTests, ThePermissionIsFoundAgainByTheLastToken) {
    token.write("first");
    desktop.restoreToken = "second";
    serve();
    events->create(tabDown);
    EXPECT_EQ(desktop.calls()[1], "SelectDevices persist_mode=2 restore_token=first types=3");
    EXPECT_EQ(token.read(), "second");
    desktop.change([&] { desktop.restoreToken.clear(); });
    events.emplace(portal, token);
    events->create(tabDown);
    EXPECT_EQ(token.read(), std::nullopt) << "used up, and no next one";
}

TEST_F(PortalInputEventsTests, AUserWhoRefusesIsAskedOnce) {
    for (const char* method : {"CreateSession", "SelectDevices", "SelectSources", "Start"}) {
        SCOPED_TRACE(method);
        desktop.stop();
        desktop.outcomes = {{method, 1}};
        serve();
        events.emplace(portal, token);
        EXPECT_EQ(events->create(tabDown), nullptr);
        const Lines asked = desktop.calls();
        EXPECT_EQ(events->create(MouseEvent{MouseEventType::moved, {}, 0}), nullptr);
        EXPECT_EQ(desktop.calls(), asked);
    }
}

TEST_F(PortalInputEventsTests, OnlyTheDevicesThatTheUserGaveAreUsed) {
    desktop.devices = 1;
    serve();
    EXPECT_NE(events->create(tabDown), nullptr);
    EXPECT_EQ(events->create(MouseEvent{MouseEventType::moved, {}, 0}), nullptr);
    desktop.stop();
    desktop.devices = 2;
    serve();
    events.emplace(portal, token);
    EXPECT_EQ(events->create(tabDown), nullptr);
    EXPECT_NE(events->create(MouseEvent{MouseEventType::moved, {}, 0}), nullptr);
}

TEST_F(PortalInputEventsTests, WithoutASharedMonitorThePointerHasNoPlace) {
    desktop.streams.clear();
    serve();
    EXPECT_EQ(events->create(MouseEvent{MouseEventType::moved, {}, 0}), nullptr);
}

TEST_F(PortalInputEventsTests, WithoutScreenCastThereIsOnlyTheKeyboard) {
    desktop.portals = {"RemoteDesktop"};
    desktop.streams.clear();
    serve();
    EXPECT_NE(events->create(tabDown), nullptr);
    EXPECT_THROW(events->create(MouseEvent{MouseEventType::moved, {}, 0}), PortalMissing);
}

TEST_F(PortalInputEventsTests, WithoutThePortalTheErrorSaysWhatIsMissing) {
    desktop.portals = {"Screenshot"};
    serve();
    try {
        events->create(tabDown);
        ADD_FAILURE() << "no failure";
    } catch (const PortalMissing& error) {
        EXPECT_TRUE(error.description().starts_with("The desktop offers no portal \"RemoteDesktop\""));
    }
}

TEST_F(PortalInputEventsTests, AClickMovesOnceAndPressesItsButton) {
    serve();
    post(MouseEvent{MouseEventType::moved, {10.5, 20}, 0});
    post(MouseEvent{MouseEventType::leftDown, {10.5, 20}, 0});
    post(MouseEvent{MouseEventType::leftUp, {10.5, 20}, 0});
    EXPECT_EQ(input(), (Lines{"NotifyPointerMotionAbsolute 41 10.5 20", "NotifyPointerButton 272 1",
                              "NotifyPointerButton 272 0"}));
    post(MouseEvent{MouseEventType::rightDown, {11, 20}, 1});
    post(MouseEvent{MouseEventType::rightUp, {11, 20}, 1});
    EXPECT_EQ(input(), (Lines{"NotifyPointerMotionAbsolute 41 11 20", "NotifyPointerButton 273 1",
                              "NotifyPointerButton 273 0"}));
    EXPECT_FALSE(post(MouseEvent{MouseEventType::leftDown, {}, 2})) << "a button that nobody named";
}

TEST_F(PortalInputEventsTests, APointIsOnTheNearestMonitor) {
    serve();
    const std::pair<ScreenPoint, const char*> cases[] = {
        {{0, 0}, "41 0 0"},         {{799.5, 599.5}, "41 799.5 599.5"},
        {{800, 600}, "41 799 599"}, {{-0.5, 150}, "42 399.5 50"},
        {{-400, 100}, "42 0 0"},    {{-400, 0}, "42 0 0"},
        {{-10, 500}, "41 0 500"},
    };
    for (const auto& [point, expected] : cases) {
        post(MouseEvent{MouseEventType::moved, point, 0});
        EXPECT_EQ(input(), Lines{std::string("NotifyPointerMotionAbsolute ") + expected}) << point.x << "," << point.y;
    }
}

TEST_F(PortalInputEventsTests, AMonitorOfUnknownPlaceHoldsAllPoints) {
    desktop.streams = {{.node = 7, .position = {}, .size = {}}};
    serve();
    post(MouseEvent{MouseEventType::moved, {5000, 4000}, 0});
    EXPECT_EQ(input(), Lines{"NotifyPointerMotionAbsolute 7 5000 4000"});
}

TEST_F(PortalInputEventsTests, AKeyIsPressedWithinItsModifiers) {
    serve();
    KeyboardEvent left{.keyCode = 123, .keyDown = true, .flags = 0x1E0000};
    post(left);
    EXPECT_EQ(input(),
              (Lines{"NotifyKeyboardKeysym 65507 1", "NotifyKeyboardKeysym 65513 1", "NotifyKeyboardKeysym 65505 1",
                     "NotifyKeyboardKeysym 65515 1", "NotifyKeyboardKeysym 65361 1"}));
    left.keyDown = false;
    post(left);
    EXPECT_EQ(input(),
              (Lines{"NotifyKeyboardKeysym 65361 0", "NotifyKeyboardKeysym 65515 0", "NotifyKeyboardKeysym 65505 0",
                     "NotifyKeyboardKeysym 65513 0", "NotifyKeyboardKeysym 65507 0"}));
    EXPECT_FALSE(post(KeyboardEvent{.keyCode = 1, .keyDown = true})) << "no key that is known";
}

TEST_F(PortalInputEventsTests, TextIsTypedByItsCharacters) {
    serve();
    for (const char16_t unit : std::u16string_view(u"a\u00e4\n")) type(unit);
    EXPECT_EQ(input(),
              (Lines{"NotifyKeyboardKeysym 97 1", "NotifyKeyboardKeysym 97 0", "NotifyKeyboardKeysym 228 1",
                     "NotifyKeyboardKeysym 228 0", "NotifyKeyboardKeysym 65293 1", "NotifyKeyboardKeysym 65293 0"}));
    EXPECT_FALSE(post(KeyboardEvent{.keyDown = true, .unit = u'\x01'})) << "no key types it";
}

TEST_F(PortalInputEventsTests, TwoUnitsAreTypedAsTheirOneCharacter) {
    serve();
    for (const char16_t unit : std::u16string_view(u"\U0001F600b")) type(unit);
    EXPECT_EQ(input(), (Lines{"NotifyKeyboardKeysym 16905728 1", "NotifyKeyboardKeysym 16905728 0",
                              "NotifyKeyboardKeysym 98 1", "NotifyKeyboardKeysym 98 0"}));
    type(u'\xDE00');
    EXPECT_EQ(input(), Lines{}) << "half a character";
}

TEST_F(PortalInputEventsTests, ASessionThatTheUserEndedFailsThePosting) {
    serve();
    post(tabDown);
    desktop.change([&] { desktop.isSessionEnded = true; });
    EXPECT_THROW(post(tabDown), BusError);
}

} // namespace
} // namespace vesk::test
