// The built broker in a Wayland session of our own: a compositor with two monitors, portals and an accessibility bus.

#include "VeskPlatform/Linux/Wayland/Picture.hpp"
#include "tests/VeskPlatform/Linux/Wayland/PictureFiles.hpp"
#include "tests/fakes/FakeAccessibleApplication.hpp"
#include "tests/fakes/FakeDesktopPortal.hpp"
#include "tests/support/NestedCompositor.hpp"
#include "tests/support/PrivateBus.hpp"
#include "tests/support/ProgramRun.hpp"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace vesk::test {
namespace {

using testing::HasSubstr;
using Lines = std::vector<std::string>;

/// One monitor of 80 by 60 points, and one of 40 by 30 to the right of it.
constexpr const char* monitors = "[output]\nname=WL1\nmode=80x60\n[output]\nname=WL2\nmode=40x30\n";

class WaylandProgram : public testing::Test {
protected:
    NestedCompositor compositor{monitors};
    PrivateBus session, accessibility;
    FakeDesktopPortal desktop;
    ProgramRun program{VESK_BINARY_DIR "/bin/VeskCapabilityBroker"};

    void SetUp() override {
        program.environment["VESK_STATE_DIR"] = (program.folder() / "state").string();
        program.environment["VESK_APP_SUPPORT_DIR"] = (program.folder() / "support").string();
        program.environment["WAYLAND_DISPLAY"] = NestedCompositor::display;
        program.environment["XDG_RUNTIME_DIR"] = compositor.runtimeFolder();
        program.environment["DBUS_SESSION_BUS_ADDRESS"] = session.address();
        program.environment["AT_SPI_BUS_ADDRESS"] = accessibility.address();
        ProgramRun companion(VESK_BINARY_DIR "/bin/vesk");
        companion.environment = program.environment;
        const auto granted = companion.run({"consent", "grant", "accessibility", "screen_recording", "--yes"});
        EXPECT_EQ(granted.status, 0) << granted;
    }
    void serve() { desktop.serveAt(session.address()); }
    std::string succeed(const std::vector<std::string>& arguments) const {
        const ProgramResult result = program.run(arguments);
        EXPECT_EQ(result.status, 0) << result;
        EXPECT_EQ(result.errorOutput, "") << result;
        return result.output;
    }
    std::string fail(const std::vector<std::string>& arguments) const {
        const ProgramResult result = program.run(arguments);
        EXPECT_EQ(result.status, 1) << result;
        EXPECT_EQ(result.output, "") << result;
        return result.errorOutput;
    }
};

TEST_F(WaylandProgram, TheScreenshotHoldsBothMonitorsAndNothingBetween) {
    std::vector<std::uint32_t> pixels;
    for (std::uint32_t i = 0; i < 120 * 60; ++i) pixels.push_back(i * 2311 & 0xFFFFFF);
    const std::string shown = (program.folder() / "shown.png").string();
    writePng(shown, 120, 60, false, pixels);
    desktop.screenshotUri = "file://" + shown;
    serve();
    EXPECT_THAT(succeed({"screenshot", "--output", "shots/a.png"}), HasSubstr("\"width\" : 120"));

    const auto written = readPng((program.folder() / "shots/a.png").string());
    ASSERT_NE(written, nullptr);
    ASSERT_EQ(written->pixels.size(), pixels.size());
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const bool isCovered = i % 120 < 80 || i / 120 < 30;
        ASSERT_EQ(written->pixels[i], isCovered ? 0xFF000000 | pixels[i] : 0U) << i % 120 << "," << i / 120;
    }
    EXPECT_EQ(desktop.calls(), Lines{"Screenshot interactive=false"});
}

TEST_F(WaylandProgram, AUserWhoRefusesTheScreenshotLeavesNoFile) {
    desktop.outcomes["Screenshot"] = 1;
    serve();
    EXPECT_THAT(fail({"screenshot", "--output", "a.png"}), HasSubstr("Unable to capture the current screen."));
    EXPECT_FALSE(std::filesystem::exists(program.folder() / "a.png"));
}

TEST_F(WaylandProgram, TextGoesThroughASessionThatIsFoundAgain) {
    desktop.restoreToken = "token";
    serve();
    EXPECT_THAT(succeed({"type", "--text", "\U0001F600"}), HasSubstr("\"textLength\" : 1"));
    EXPECT_THAT(succeed({"key", "--key", "enter", "--modifiers", "command"}), HasSubstr("\"key\" : \"return\""));
    EXPECT_EQ(
        desktop.calls(),
        (Lines{"CreateSession", "SelectDevices persist_mode=2 types=3", "SelectSources multiple=true types=1", "Start",
               "NotifyKeyboardKeysym 16905728 1", "NotifyKeyboardKeysym 16905728 0", "Close session", "CreateSession",
               "SelectDevices persist_mode=2 restore_token=token types=3", "SelectSources multiple=true types=1",
               "Start", "NotifyKeyboardKeysym 65515 1", "NotifyKeyboardKeysym 65293 1", "NotifyKeyboardKeysym 65293 0",
               "NotifyKeyboardKeysym 65515 0", "Close session"}));
}

TEST_F(WaylandProgram, AClickLandsOnTheMonitorThatHoldsIt) {
    desktop.streams = {{.node = 41, .position = {{0, 0}}, .size = {{80, 60}}},
                       {.node = 42, .position = {{80, 0}}, .size = {{40, 30}}}};
    serve();
    EXPECT_THAT(succeed({"click", "--x", "0.75", "--y", "0.25", "--button", "right"}), HasSubstr("\"screenX\" : 90"));
    const Lines calls = desktop.calls();
    ASSERT_EQ(calls.size(), 8U);
    EXPECT_EQ(Lines(calls.begin() + 4, calls.end()),
              (Lines{"NotifyPointerMotionAbsolute 42 10 15", "NotifyPointerButton 273 1", "NotifyPointerButton 273 0",
                     "Close session"}));
}

TEST_F(WaylandProgram, WithoutPortalsTheErrorSaysWhatToInstall) {
    for (const std::vector<std::string>& arguments :
         {Lines{"screenshot", "--output", "a.png"}, Lines{"type", "--text", "a"}})
        EXPECT_THAT(fail(arguments), HasSubstr("install xdg-desktop-portal and the portal of your desktop"));
}

TEST_F(WaylandProgram, TheActiveApplicationIsTold) {
    constexpr const char* root = FakeAccessibleApplication::root;
    FakeAccessibleApplication registry{"org.a11y.atspi.Registry"}, letters{"test.letters"};
    registry.objects[root].children.emplace_back(letters.name(), root);
    letters.objects[root].name = "Letters";
    letters.add(root, "/1", ATSPI_ROLE_FRAME, {ATSPI_STATE_ACTIVE});
    for (FakeAccessibleApplication* application : {&registry, &letters}) application->serveAt(accessibility.address());
    const std::string told = succeed({"active-app"});
    EXPECT_THAT(told, HasSubstr("\"appName\" : \"Letters\""));
    EXPECT_THAT(told, HasSubstr("\"processIdentifier\" : " + std::to_string(::getpid())));
    EXPECT_THAT(succeed({"activate-app", "--app", "letters"}), HasSubstr("\"activated\" : true"));
}

TEST_F(WaylandProgram, ADisplayThatIsNotThereIsNamed) {
    program.environment["WAYLAND_DISPLAY"] = "wayland-none";
    EXPECT_THAT(fail({"active-app"}), HasSubstr("The Wayland display \"wayland-none\" cannot be reached"));
}

/// The library under the connection has lines of its own for these, which would stand before ours.
TEST_F(WaylandProgram, ADisplayThatIsNamedWronglyEndsWithOneLine) {
    const std::vector<std::pair<std::string, std::string>> sessions{{"wayland-none", ""},
                                                                    {std::string(200, 'x'), program.folder().string()}};
    for (const auto& [display, runtimeFolder] : sessions) {
        program.environment["WAYLAND_DISPLAY"] = display;
        program.environment["XDG_RUNTIME_DIR"] = runtimeFolder;
        const std::string told = fail({"active-app"});
        EXPECT_EQ(std::ranges::count(told, '\n'), 1) << told;
        EXPECT_THAT(told, HasSubstr("The Wayland display \"" + display + "\" cannot be reached"));
    }
}

/// In the answer about the active application; none where it has none.
std::optional<pid_t> processOf(const std::string& answer) {
    const std::string key = "\"processIdentifier\" : ";
    const std::size_t found = answer.find(key);
    if (found == std::string::npos) return std::nullopt;
    return std::stoi(answer.substr(found + key.size()));
}

/// A GTK program with one field, in a session of its own.
TEST(WaylandProgramForReal, AGtkProgramIsInFrontWithItsField) {
    const NestedCompositor compositor;
    PrivateBus session;
    session.addActivatable("org.a11y.Bus", "/usr/libexec/at-spi-bus-launcher");
    ProgramRun broker(VESK_BINARY_DIR "/bin/VeskCapabilityBroker");
    broker.environment["VESK_STATE_DIR"] = (broker.folder() / "state").string();
    broker.environment["WAYLAND_DISPLAY"] = NestedCompositor::display;
    broker.environment["XDG_RUNTIME_DIR"] = compositor.runtimeFolder();
    broker.environment["DBUS_SESSION_BUS_ADDRESS"] = session.address();
    ProgramRun companion(VESK_BINARY_DIR "/bin/vesk");
    companion.environment = broker.environment;
    companion.run({"consent", "grant", "accessibility", "--yes"});
    ProgramRun dialog("/usr/bin/zenity");
    dialog.environment = broker.environment;
    dialog.environment["GDK_BACKEND"] = "wayland";
    dialog.deadline = std::chrono::seconds(20);
    std::thread running([&dialog] { dialog.run({"--entry", "--title=Letter", "--timeout=20"}); });

    std::string front;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(15);
    while (front.find("\"appName\"") == std::string::npos && std::chrono::steady_clock::now() < deadline)
        front = broker.run({"active-app"}).output;
    EXPECT_THAT(front, HasSubstr("\"appName\" : \"zenity\""));
    const ProgramResult focus = broker.run({"focused-element"});
    EXPECT_THAT(focus.output, HasSubstr("\"role\" : \"AXTextField\"")) << focus;
    EXPECT_THAT(focus.output, HasSubstr("\"windowTitle\" : \"Letter\"")) << focus;
    if (const auto process = processOf(front)) ::kill(*process, SIGTERM);
    running.join();
}

} // namespace
} // namespace vesk::test
