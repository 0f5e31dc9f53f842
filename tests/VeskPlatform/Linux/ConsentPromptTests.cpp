#include "VeskPlatform/Linux/ConsentDatabase.hpp"
#include "tests/support/ProgramRun.hpp"
#include "tests/support/TemporaryFolder.hpp"
#include "tests/support/TerminalRun.hpp"

#include <gmock/gmock.h>

namespace vesk::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

const std::string probe = VESK_BINARY_DIR "/bin/VeskConsentProbe";
const std::string question = "Title of calendar\r\nSummary of it. [y/N] ";

struct ConsentPromptTests : ::testing::Test {
    TemporaryFolder folder;
    ConsentDatabase database{folder / "state"};
    std::map<std::string, std::string> environment{{"VESK_STATE_DIR", folder / "state"}, {"HOME", folder.path()}};

    /// Types `keys` at the question about `what`; returns what the terminal shows in the end.
    std::string answered(const std::string& keys, const std::string& what = "calendar") {
        TerminalRun run({probe, what}, environment);
        run.waitFor("[y/N] ");
        run.type(keys);
        EXPECT_EQ(run.finish(), 0);
        return run.shown();
    }
};

TEST_F(ConsentPromptTests, AnswersAtTheTerminal) {
    const struct {
        const char* name;
        const char* keys;
        const char* outcome;
        ConsentState state;
    } cases[] = {
        {"y", "y\n", "granted=1 status=3 resumed=1", ConsentState::granted},
        {"yes", "yes\n", "granted=1 status=3 resumed=1", ConsentState::granted},
        {"YES with blanks", "  YES \n", "granted=1 status=3 resumed=1", ConsentState::granted},
        {"a corrected line", "nn\x7f\x7fy\n", "granted=1 status=3 resumed=1", ConsentState::granted},
        {"n", "n\n", "granted=0 status=2 resumed=1", ConsentState::denied},
        {"empty", "\n", "granted=0 status=2 resumed=1", ConsentState::denied},
        {"yep", "yep\n", "granted=0 status=2 resumed=1", ConsentState::denied},
        {"end of input", "\x04", "granted=0 status=0 resumed=1", ConsentState::notDetermined},
        {"end of input behind a word", "y\x04\x04", "granted=0 status=0 resumed=1", ConsentState::notDetermined},
        {"interrupt", "\x03", "granted=0 status=0 resumed=1", ConsentState::notDetermined},
        {"interrupt behind a word", "y\x03", "granted=0 status=0 resumed=1", ConsentState::notDetermined},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        database.reset({"calendar"});
        const std::string shown = answered(c.keys);
        EXPECT_THAT(shown, HasSubstr(question));
        EXPECT_THAT(shown, HasSubstr(c.outcome));
        EXPECT_EQ(database.state("calendar"), c.state);
    }
}

TEST_F(ConsentPromptTests, TheDecisionTellsThatItWasMadeAtTheTerminalAndWhen) {
    answered("y\n");
    const ConsentDecision decision = database.decisions().at("calendar");
    EXPECT_EQ(decision.decidedBy, "terminal");
    EXPECT_THAT(decision.decidedAt, ::testing::MatchesRegex("20..-..-..T..:..:......Z"));
}

TEST_F(ConsentPromptTests, ScreenCaptureAndTrustAskForTheirRows) {
    EXPECT_THAT(answered("y\n", "screen_recording"), HasSubstr("screen=1 trusted=0"));
    EXPECT_THAT(answered("y\n", "accessibility"), HasSubstr("screen=1 trusted=1"));
}

TEST_F(ConsentPromptTests, ADecidedCapabilityIsNotAskedAbout) {
    for (const ConsentState state : {ConsentState::restricted, ConsentState::denied, ConsentState::granted}) {
        database.decide({"calendar"}, {state, "vesk consent", "2026-04-26T08:30:00.000Z"});
        TerminalRun run({probe, "calendar"}, environment);
        EXPECT_EQ(run.finish(), 0);
        EXPECT_THAT(run.shown(), Not(HasSubstr("[y/N]")));
        EXPECT_THAT(run.shown(), HasSubstr("status=" + std::to_string(static_cast<int>(state))));
    }
}

TEST_F(ConsentPromptTests, AHangUpDecidesNothing) {
    {
        TerminalRun run({probe, "calendar"}, environment);
        run.waitFor("[y/N] ");
        run.hangUp();
        run.finish();
    }
    EXPECT_EQ(database.state("calendar"), ConsentState::notDetermined);
}

TEST_F(ConsentPromptTests, AProgramInTheBackgroundAsksNobodyAndIsNotStopped) {
    TerminalRun run({"/bin/sh", "-c", "set -m; " + probe + " calendar & wait"}, environment);
    EXPECT_EQ(run.finish(), 0);
    EXPECT_THAT(run.shown(), HasSubstr("granted=0 status=0 resumed=1"));
    EXPECT_THAT(run.shown(), Not(HasSubstr("[y/N]")));
}

TEST_F(ConsentPromptTests, WithoutTerminalAndDesktopNothingIsAskedAndNothingMade) {
    ProgramRun run(probe);
    const auto result = run.run({"calendar"});
    EXPECT_EQ(result.output, "granted=0 status=0 resumed=1 screen=0 trusted=0\n") << result;
    EXPECT_EQ(result.errorOutput, "");
    EXPECT_TRUE(std::filesystem::is_empty(run.folder())) << "reading must not create anything";
}

TEST_F(ConsentPromptTests, ADisplayThatCannotBeReachedLeavesTheTerminal) {
    environment["DISPLAY"] = ":4711";
    environment["WAYLAND_DISPLAY"] = "wayland-none";
    environment["XDG_RUNTIME_DIR"] = folder.path();
    EXPECT_THAT(answered("y\n"), HasSubstr("granted=1"));
}

TEST_F(ConsentPromptTests, TheFirstOfTwoAnswersStands) {
    TerminalRun first({probe, "calendar"}, environment), second({probe, "calendar"}, environment);
    first.waitFor("[y/N] ");
    second.waitFor("[y/N] ");
    first.type("n\n");
    EXPECT_EQ(first.finish(), 0);
    second.type("y\n");
    EXPECT_EQ(second.finish(), 0);
    EXPECT_THAT(second.shown(), HasSubstr("granted=0 status=2"));
    EXPECT_EQ(database.state("calendar"), ConsentState::denied);
}

TEST_F(ConsentPromptTests, AnUnusableDatabaseIsNotAskedAbout) {
    folder.write("state/consent.sqlite", std::string(4096, 'x'));
    TerminalRun run({probe, "calendar"}, environment);
    EXPECT_EQ(run.finish(), 0);
    EXPECT_THAT(run.shown(), HasSubstr("granted=0 status=-1 resumed=1 screen=0 trusted=0"));
}

} // namespace
} // namespace vesk::test
