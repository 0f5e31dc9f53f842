#include "VeskPlatform/Linux/DesktopDialog.hpp"

#include "VeskPlatform/Linux/ConsentDatabase.hpp"
#include "VeskPlatform/Linux/DesktopReach.hpp"
#include "VeskPlatform/Linux/ProcessEnvironment.hpp"
#include "VeskPlatform/Linux/UserPrompt.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/support/VirtualDesktop.hpp"

#include <future>
#include <gmock/gmock.h>

namespace vesk::test {
namespace {

/// One desktop for all of these tests: starting one takes longer than they do.
class DesktopDialogTests : public ::testing::Test {
protected:
    static void SetUpTestSuite() { desktop = std::make_unique<VirtualDesktop>(); }
    static void TearDownTestSuite() { desktop.reset(); }

    static inline std::unique_ptr<VirtualDesktop> desktop;
    ProcessEnvironment environment;

    DialogChoice chosen(const std::vector<std::string>& keys, const std::vector<std::string>& labels) {
        auto choice = std::async(std::launch::async, [&] {
            return DesktopDialog(environment).choose("Calendar", "It's <b>a \\n test</b> & more", labels);
        });
        desktop->press("Calendar", keys);
        return choice.get();
    }
};

TEST_F(DesktopDialogTests, TheDesktopIsReached) { EXPECT_TRUE(desktopCanBeReached(environment)); }

TEST_F(DesktopDialogTests, EachLabelCanBeChosen) {
    const std::vector<std::string> labels{"Close", "Allow", "Deny", "Reset"};
    for (std::size_t i = 0; i < labels.size(); ++i) {
        std::vector<std::string> keys(i, "Tab");
        keys.emplace_back("Return");
        const DialogChoice choice = chosen(keys, labels);
        EXPECT_TRUE(choice.shown) << labels[i];
        EXPECT_EQ(choice.chosen, i) << labels[i];
    }
}

TEST_F(DesktopDialogTests, ClosingChoosesNothing) {
    for (const char* key : {"Escape", "alt+F4"}) {
        const DialogChoice choice = chosen({key}, {"Deny", "Allow"});
        EXPECT_TRUE(choice.shown) << key;
        EXPECT_FALSE(choice.chosen) << key;
    }
}

TEST_F(DesktopDialogTests, ThePromptAnswersInTheDialog) {
    const struct {
        std::vector<std::string> keys;
        PromptAnswer answer;
    } cases[] = {
        {{"Return"}, PromptAnswer::deny},
        {{"Tab", "Return"}, PromptAnswer::grant},
        {{"Escape"}, PromptAnswer::undecided},
    };
    for (const auto& c : cases) {
        UserPrompt prompt{DesktopDialog(environment)};
        auto answer = std::async(std::launch::async, [&] { return prompt.ask("Contacts", "Used when you ask."); });
        desktop->press("Contacts", c.keys);
        EXPECT_EQ(answer.get(), (GivenAnswer{c.answer, "dialog"})) << c.keys.front();
    }
}

TEST(DesktopReachTests, NamesOfDisplaysThatNothingAnswers) {
    TemporaryFolder folder;
    for (const char* display : {"", ":", ":x", ":4711", ":4711.0", "unix:4711", ":99999", "nonsense", ":-1"}) {
        FakeEnvironment environment;
        environment.variables = {{"DISPLAY", display}, {"WAYLAND_DISPLAY", "none"}, {"XDG_RUNTIME_DIR", folder.path()}};
        EXPECT_FALSE(desktopCanBeReached(environment)) << display;
    }
}

/// A dialog program that is a script: writes its arguments to a file and ends as told.
struct KdialogTests : DesktopDialogTests {
    TemporaryFolder folder;
    DialogChoice answered(const std::string& ending, const std::vector<std::string>& labels,
                          const std::string& name = "kdialog") {
        const std::string program =
            folder.write(name, "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" + folder / "arguments" + "'\n" + ending + "\n");
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        return DesktopDialog(environment, {folder.path()}).choose("Title", "Text", labels);
    }
};

TEST_F(KdialogTests, TwoLabelsAreYesAndNo) {
    EXPECT_EQ(answered("exit 0", {"Deny", "Allow"}).chosen, 0U);
    EXPECT_EQ(folder.read("arguments"), "--title\nTitle\n--yes-label\nDeny\n--no-label\nAllow\n--yesnocancel\nText\n");
    EXPECT_EQ(answered("exit 1", {"Deny", "Allow"}).chosen, 1U);
    const DialogChoice closed = answered("exit 2", {"Deny", "Allow"});
    EXPECT_TRUE(closed.shown);
    EXPECT_FALSE(closed.chosen);
}

TEST_F(KdialogTests, MoreLabelsAreAMenu) {
    EXPECT_EQ(answered("echo 2", {"Close", "Allow", "Deny"}).chosen, 2U);
    EXPECT_EQ(folder.read("arguments"), "--title\nTitle\n--menu\nText\n0\nClose\n1\nAllow\n2\nDeny\n");
    EXPECT_FALSE(answered("exit 1", {"Close", "Allow", "Deny"}).chosen);
    EXPECT_FALSE(answered("echo 7", {"Close", "Allow", "Deny"}).chosen);
}

TEST_F(KdialogTests, AProgramThatCrashesHasShownNothing) {
    EXPECT_FALSE(answered("kill -ABRT $$", {"Deny", "Allow"}).shown);
    EXPECT_FALSE(answered("exit 127", {"Deny", "Allow"}).shown);
}

TEST_F(KdialogTests, ADisplayThatTurnsZenityAwayHasShownNothing) {
    EXPECT_FALSE(
        answered("echo 'Gtk-WARNING: cannot open display: :0' >&2; exit 1", {"Deny", "Allow"}, "zenity").shown);
    EXPECT_FALSE(answered("exit 255", {"Deny", "Allow"}, "zenity").shown);
}

TEST_F(KdialogTests, WithoutADialogProgramNothingIsShown) {
    EXPECT_FALSE(DesktopDialog(environment, {folder.path()}).choose("Title", "Text", {"Deny", "Allow"}).shown);
}

TEST_F(KdialogTests, ThePathOfTheEnvironmentIsNotSearched) {
    folder.write("zenity", "#!/bin/sh\necho Allow\n");
    std::filesystem::permissions(folder / "zenity", std::filesystem::perms::owner_all);
    const std::string before = std::getenv("PATH");
    ::setenv("PATH", folder.path().c_str(), 1);
    EXPECT_FALSE(DesktopDialog(environment, {folder / "none"}).choose("Title", "Text", {"Deny", "Allow"}).shown);
    ::setenv("PATH", before.c_str(), 1);
}

} // namespace
} // namespace vesk::test
