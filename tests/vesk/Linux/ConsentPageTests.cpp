#include "vesk/Linux/ConsentPage.hpp"

#include "VeskPlatform/Linux/ProcessEnvironment.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/support/ProgramRun.hpp"
#include "tests/support/VirtualDesktop.hpp"

#include <future>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

const std::string pane = "x-apple.systempreferences:com.apple.preference.security?Privacy_";

struct ConsentPageTests : ::testing::Test {
    TemporaryFolder folder;
    ConsentDatabase database{folder.path()};
    FakeClock clock;
    ProcessEnvironment environment;

    /// Shows a page and presses the keys of each of its dialogs in turn.
    void show(const std::string& name, const std::vector<std::vector<std::string>>& dialogs) {
        VirtualDesktop desktop;
        auto page = std::async(std::launch::async, [&] {
            runConsentPage({.url = pane + name, .usage = ""}, DesktopDialog(environment), database, clock);
        });
        for (const auto& keys : dialogs) desktop.press("Vesk: privacy", keys);
        page.get();
    }
};

const std::vector<std::string> close{"Escape"}, first{"Return"}, second{"Tab", "Return"}, third{"Tab", "Tab", "Return"},
    fourth{"Tab", "Tab", "Tab", "Return"};

TEST_F(ConsentPageTests, AllowsDeniesAndResetsUntilItIsClosed) {
    show("Calendars", {second, first});
    EXPECT_EQ(database.decisions().at("calendar"),
              (ConsentDecision{ConsentState::granted, "dialog", "2026-04-26T08:30:00.000Z"}));
    show("Calendars", {third, close});
    EXPECT_EQ(database.state("calendar"), ConsentState::denied);
    show("Calendars", {fourth, close});
    EXPECT_TRUE(database.decisions().empty());
}

TEST_F(ConsentPageTests, APaneOfTwoLetsTheUserPick) {
    show("Automation", {third, second, second, close, close}); // Mail, Allow; Messages, closed; closed
    EXPECT_EQ(database.state("mail"), ConsentState::granted);
    EXPECT_EQ(database.state("messages"), ConsentState::notDetermined);
}

TEST_F(ConsentPageTests, ScreenRecordingAndSystemAudioAreOneDecision) {
    show("ScreenCapture", {second, close});
    EXPECT_EQ(database.state("screen_recording"), ConsentState::granted);
    EXPECT_FALSE(database.decisions().contains("system_audio"));
}

TEST(ConsentPageProgramTests, WithoutADesktopItDoesNothing) {
    for (const char* name : {"Calendars", "Automation", "AllFiles"}) {
        ProgramRun vesk(VESK_BINARY_DIR "/bin/vesk");
        const auto result = vesk.run({"consent", "page", pane + name});
        EXPECT_EQ(result.status, 0) << result;
        EXPECT_EQ(result.output + result.errorOutput, "") << result;
        EXPECT_TRUE(std::filesystem::is_empty(vesk.folder()));
    }
}

} // namespace
} // namespace vesk::test
