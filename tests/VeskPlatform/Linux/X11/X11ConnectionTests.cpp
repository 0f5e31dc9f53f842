#include "VeskPlatform/Linux/X11/X11Connection.hpp"

#include "VeskPlatform/Linux/X11/X11Error.hpp"
#include "VeskPlatform/Linux/X11/X11WindowSystem.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/support/VirtualDesktop.hpp"

#include <csignal>
#include <gmock/gmock.h>
#include <optional>

namespace vesk::test {
namespace {

using ::testing::HasSubstr;
using Kind = X11Error::Kind;

template <class Action> std::optional<X11Error> errorOf(Action action) {
    try {
        action();
    } catch (const X11Error& error) {
        return error;
    }
    return std::nullopt;
}

TEST(X11ConnectionTests, NoDisplaySaysWhatIsMissing) {
    FakeEnvironment environment;
    const auto error = errorOf([&] { X11WindowSystem({environment, "", [](const std::string&) {}}); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), Kind::unreachable);
    EXPECT_THAT(error->description(), HasSubstr("DISPLAY is not set"));
}

TEST(X11ConnectionTests, ADisplayThatIsNotThereSaysWhichAndWhatToCheck) {
    for (const std::string name : {":59999", "nonsense", "/nowhere:1"}) {
        const auto error = errorOf([&] { X11Connection connection(name); });
        ASSERT_TRUE(error) << name;
        EXPECT_EQ(error->kind(), Kind::unreachable);
        EXPECT_THAT(error->description(), HasSubstr(name));
        EXPECT_THAT(error->description(), HasSubstr("Check that"));
    }
}

class X11BrokenServerTests : public ::testing::Test {
protected:
    VirtualDesktop desktop{VirtualScreen{.hasWindowManager = false}};
    static constexpr std::chrono::milliseconds patience{100};
};

TEST_F(X11BrokenServerTests, ADisplayThatClosesInTheMiddleIsAFailureAndNotAnEnd) {
    X11Connection connection(desktop.display());
    connection.synchronize();
    desktop.end();
    for (int i = 0; i < 2; ++i) {
        const auto error = errorOf([&] { connection.synchronize(); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->kind(), Kind::lost);
        EXPECT_THAT(error->description(), HasSubstr("was closed"));
    }
    EXPECT_TRUE(errorOf([&] { connection.flush(); }));
    EXPECT_TRUE(errorOf([&] { connection.dispatchEvents(); }));
}

TEST_F(X11BrokenServerTests, EveryPortFailsOnADisplayThatIsGone) {
    FakeEnvironment environment;
    environment.variables["DISPLAY"] = desktop.display();
    X11WindowSystem session({environment, "", [](const std::string&) {}});
    InputEvents& events = session.inputEvents();
    const auto move = events.create(MouseEvent{MouseEventType::moved, {1, 1}, 0});
    const auto key = events.create(KeyboardEvent{.keyDown = true, .unit = u'\u0436'});
    const auto display = session.displays().list(1).value().at(0);
    events.post(*key);
    RunningApplications& applications = session.runningApplications();
    desktop.end();
    EXPECT_TRUE(errorOf([&] { // the first bytes may still find the socket open
        events.post(*move);
        events.post(*key);
        events.post(*move);
    }));
    EXPECT_TRUE(errorOf([&] { session.displays().count(); }));
    EXPECT_TRUE(errorOf([&] { session.displays().capture(display); }));
    EXPECT_TRUE(errorOf([&] { applications.list(); }));
    EXPECT_TRUE(errorOf([&] { applications.frontmost(); }));
}

TEST_F(X11BrokenServerTests, AServerThatDoesNotAnswerHasADeadline) {
    X11Connection connection(desktop.display(), patience);
    ::kill(desktop.server(), SIGSTOP);
    const auto error = errorOf([&] { connection.synchronize(); });
    const auto opening = errorOf([&] { X11Connection another(desktop.display(), patience); });
    ::kill(desktop.server(), SIGCONT);
    ASSERT_TRUE(error && opening);
    EXPECT_EQ(error->kind(), Kind::silent);
    EXPECT_EQ(opening->kind(), Kind::silent);
    EXPECT_THAT(opening->description(), HasSubstr("did not answer within 1 second."));
}

TEST_F(X11BrokenServerTests, AServerThatTakesNoMoreRequestsHasADeadline) {
    X11Connection connection(desktop.display(), patience);
    ::kill(desktop.server(), SIGSTOP);
    constexpr int moreThanFit = 100'000;
    const auto error = errorOf([&] {
        for (int i = 0; i < moreThanFit; ++i) {
            xcb_no_operation(connection.get());
            connection.flush();
        }
    });
    ::kill(desktop.server(), SIGCONT);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), Kind::silent);
}

TEST_F(X11BrokenServerTests, WhatTheServerRefusesIsNoAnswer) {
    X11Connection connection(desktop.display());
    EXPECT_EQ(connection.answer<xcb_get_geometry_reply_t>(xcb_get_geometry(connection.get(), 0x7ABCDEF)), nullptr);
    EXPECT_FALSE(connection.succeeded(xcb_destroy_window_checked(connection.get(), 0x7ABCDEF)));
    EXPECT_TRUE(connection.succeeded(xcb_bell_checked(connection.get(), 0)));
    xcb_destroy_window(connection.get(), 0x7ABCDEF);
    connection.synchronize();
    connection.dispatchEvents();
}

} // namespace
} // namespace vesk::test
