// The built broker beside real programs in an accessible session of our own.

#include "tests/support/AccessibleDesktop.hpp"
#include "tests/support/ProgramRun.hpp"

#include <csignal>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class FocusedElementProgram : public testing::Test {
protected:
    static void SetUpTestSuite() { desktop = std::make_unique<AccessibleDesktop>(); }
    static void TearDownTestSuite() { desktop.reset(); }

    void SetUp() override {
        broker.environment["VESK_STATE_DIR"] = (broker.folder() / "state").string();
        broker.environment["VESK_APP_SUPPORT_DIR"] = (broker.folder() / "support").string();
        for (const char* name : {"DISPLAY", "XDG_RUNTIME_DIR", "DBUS_SESSION_BUS_ADDRESS"})
            broker.environment[name] = std::getenv(name);
        ProgramRun companion(VESK_BINARY_DIR "/bin/vesk");
        companion.environment = broker.environment;
        const auto granted = companion.run({"consent", "grant", "accessibility", "--yes"});
        ASSERT_EQ(granted.status, 0) << granted;
    }
    void TearDown() override {
        for (const pid_t program : programs) desktop->desktop().kill(program);
    }

    /// Starts a program and waits until its window is in front.
    pid_t launch(const std::string& program, const std::vector<std::string>& arguments, const std::string& name) {
        const pid_t started = programs.emplace_back(desktop->launch(program, program, arguments));
        eventually(name + " in front", [&] {
            const std::string output = broker.run({"active-app"}).output;
            return output.find("\"appName\" : \"" + name + "\"") != std::string::npos;
        });
        return started;
    }
    /// What the broker prints as soon as it holds the text.
    std::string awaitOutput(const std::string& text) {
        ProgramResult result;
        eventually(text, [&] {
            result = broker.run({"focused-element"});
            return result.output.find(text) != std::string::npos;
        });
        EXPECT_EQ(result.status, 0) << result;
        EXPECT_EQ(result.errorOutput, "") << result;
        return result.output;
    }
    void expectFailure(const std::string& text) {
        const ProgramResult result = broker.run({"focused-element"});
        EXPECT_EQ(result.status, 1) << result;
        EXPECT_EQ(result.output, "") << result;
        EXPECT_THAT(result.errorOutput, HasSubstr(text));
    }

    static constexpr const char* unreadable =
        "Error Domain=VeskCapabilityBroker Code=91 \"Unable to read the focused UI element for the frontmost app.\"";

    static inline std::unique_ptr<AccessibleDesktop> desktop;
    std::vector<pid_t> programs;
    ProgramRun broker{VESK_BINARY_DIR "/bin/VeskCapabilityBroker"};
};

TEST_F(FocusedElementProgram, TheFocusOfAGtkEditorIsToldDirectly) {
    launch("mousepad", {"--disable-server"}, "Mousepad");
    EXPECT_THAT(awaitOutput("\"role\" : \"AXTextArea\""),
                AllOf(HasSubstr("\"detail\" : \"Reported the currently focused editable element.\""),
                      HasSubstr("\"editable\" : true"), HasSubstr("\"focused\" : true"),
                      HasSubstr("\"valueSettable\" : true"), HasSubstr("\"frameWidth\" : "),
                      HasSubstr("\"windowTitle\" : \"Untitled 1 - Mousepad\"")));
    desktop->press({"h", "i"});
    awaitOutput("\"valuePreview\" : \"hi\"");
}

TEST_F(FocusedElementProgram, TheFocusOfAQtEditorIsSearched) {
    launch("featherpad", {"--standalone"}, "FeatherPad");
    EXPECT_THAT(
        awaitOutput("\"focused\" : true"),
        AllOf(HasSubstr("\"detail\" : \"Reported the most likely editable field after scanning the front window "
                        "because the app did not expose a direct focused element.\""),
              HasSubstr("\"role\" : \"AXTextArea\""), HasSubstr("\"valueSettable\" : true"),
              HasSubstr("\"windowTitle\" : \"Untitled\"")));
}

TEST_F(FocusedElementProgram, AProgramWithoutElementsIsUnreadable) {
    launch("xterm", {}, "XTerm");
    expectFailure(unreadable);
}

TEST_F(FocusedElementProgram, AProgramThatDoesNotAnswerIsUnreadable) {
    const pid_t program = launch("mousepad", {"--disable-server"}, "Mousepad");
    awaitOutput("AXTextArea");
    ::kill(program, SIGSTOP);
    const auto start = std::chrono::steady_clock::now();
    expectFailure(unreadable);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4));
}

TEST_F(FocusedElementProgram, ASessionWithoutAccessibilityIsToldWithItsPackage) {
    launch("xterm", {}, "XTerm");
    broker.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nonexistent/bus";
    expectFailure("It comes with the Debian package at-spi2-core.");
    broker.environment.erase("DBUS_SESSION_BUS_ADDRESS");
    broker.environment.erase("XDG_RUNTIME_DIR");
    expectFailure("It comes with the Debian package at-spi2-core.");
}

TEST_F(FocusedElementProgram, WithoutConsentNothingIsRead) {
    launch("mousepad", {"--disable-server"}, "Mousepad");
    broker.environment["VESK_STATE_DIR"] = (broker.folder() / "other").string();
    expectFailure("Code=85");
}

} // namespace
} // namespace vesk::test
