#include "VeskPlatform/Linux/ConsentAutomation.hpp"

#include "VeskPlatform/Linux/ConsentPrompt.hpp"
#include "VeskPlatform/Linux/SqliteConsent.hpp"
#include "VeskPlatform/Portable/TimerSleeper.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/fakes/RunTask.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <filesystem>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

/// A user who gives the same answer to every question.
struct CountingPrompt : ConsentPrompt {
    std::optional<GivenAnswer> answer;
    int questions = 0;
    std::optional<GivenAnswer> ask(const std::string&, const std::string&) override {
        ++questions;
        return answer;
    }
};

class ConsentAutomationTests : public ::testing::Test {
protected:
    TemporaryFolder folder;
    FakeClock clock;
    CountingPrompt prompt;
    ConsentDatabase database{folder / "state", std::chrono::milliseconds(20)};
    SqliteConsent consent{database, prompt, clock, [](const std::string& id) { return std::pair(id, id); }};
    ApplicationReach reach = ApplicationReach::ready;
    ConsentAutomation automation{consent, {{"app.id", {"mail", [this] { return reach; }}}}};

    void decide(int state) { database.decide({"mail"}, {static_cast<ConsentState>(state), "test", "now"}); }
    std::optional<AutomationResult> requested() { return runTask(automation.requestPermission("app.id")); }
};

TEST_F(ConsentAutomationTests, ReachTellsWhatIsInstalledAndRunning) {
    EXPECT_TRUE(automation.isInstalled("app.id"));
    EXPECT_TRUE(automation.isRunning("app.id"));
    reach = ApplicationReach::unready;
    EXPECT_TRUE(automation.isInstalled("app.id"));
    EXPECT_FALSE(automation.isRunning("app.id"));
    reach = ApplicationReach::absent;
    EXPECT_FALSE(automation.isInstalled("app.id"));
    EXPECT_FALSE(automation.isRunning("app.id"));
}

TEST_F(ConsentAutomationTests, AnApplicationWithoutATargetIsNotInstalled) {
    EXPECT_FALSE(automation.isInstalled("other.id"));
    EXPECT_FALSE(automation.isRunning("other.id"));
    EXPECT_EQ(automation.permission("other.id"), std::nullopt);
    EXPECT_EQ(runTask(automation.requestPermission("other.id")), std::nullopt);
}

TEST_F(ConsentAutomationTests, TheConsentIsTheResult) {
    EXPECT_EQ(automation.permission("app.id"), -1744);
    const std::pair<int, AutomationResult> cases[] = {{1, -1743}, {2, -1743}, {3, 0}};
    for (const auto& [state, result] : cases) {
        decide(state);
        EXPECT_EQ(automation.permission("app.id"), result) << state;
        EXPECT_EQ(requested(), result) << state;
    }
    EXPECT_EQ(prompt.questions, 0);
}

TEST_F(ConsentAutomationTests, AnApplicationThatIsNotReadyIsNotFoundWhateverTheConsent) {
    reach = ApplicationReach::unready;
    for (const int state : {0, 2, 3}) {
        decide(state);
        EXPECT_EQ(automation.permission("app.id"), -600);
        EXPECT_EQ(requested(), -600);
    }
    reach = ApplicationReach::absent;
    EXPECT_EQ(automation.permission("app.id"), std::nullopt);
    EXPECT_EQ(requested(), std::nullopt);
    EXPECT_EQ(prompt.questions, 0) << "nobody is asked about what would not work";
}

TEST_F(ConsentAutomationTests, TheUndecidedUserIsAskedOnce) {
    EXPECT_EQ(automation.permission("app.id"), -1744);
    EXPECT_EQ(prompt.questions, 0);
    EXPECT_EQ(requested(), -1744) << "nobody there to ask";
    prompt.answer = GivenAnswer{PromptAnswer::deny, "dialog"};
    EXPECT_EQ(requested(), -1743);
    EXPECT_EQ(requested(), -1743);
    EXPECT_EQ(prompt.questions, 2);
    database.reset({"mail"});
    prompt.answer = GivenAnswer{PromptAnswer::grant, "dialog"};
    EXPECT_EQ(requested(), 0);
    EXPECT_EQ(database.state("mail"), ConsentState::granted);
}

TEST_F(ConsentAutomationTests, AnUnusableDatabaseIsAnUnknownResult) {
    folder.write("state/consent.sqlite", std::string(8192, 'x'));
    EXPECT_EQ(automation.permission("app.id"), -1);
    EXPECT_EQ(requested(), -1);
}

TEST_F(ConsentAutomationTests, LaunchingStartsWhatTheTargetSays) {
    reach = ApplicationReach::unready;
    ConsentAutomation startable{
        consent, {{"app.id", {"mail", [this] { return reach; }, [this] { reach = ApplicationReach::ready; }}}}};
    startable.launchAndWait({"other.id", {}});
    EXPECT_FALSE(startable.isRunning("app.id"));
    startable.launchAndWait({"app.id", {"/bin/false"}});
    EXPECT_TRUE(startable.isRunning("app.id"));
}

TEST_F(ConsentAutomationTests, TheCommandOfALaunchIsNotRun) {
    reach = ApplicationReach::unready;
    automation.launchAndWait({"app.id", {"/bin/sh", "-c", "echo > '" + folder / "launched" + "'"}});
    EXPECT_FALSE(folder.exists("launched"));
    EXPECT_FALSE(automation.isRunning("app.id"));
}

TEST(ReachOfMailTests, TheRootOfMailIsAFolder) {
    TemporaryFolder home;
    FakeEnvironment environment;
    environment.home = home.path();
    EXPECT_EQ(reachOfMail(environment), ApplicationReach::absent);
    environment.variables["VESK_MAIL_DIR"] = home / "post";
    EXPECT_EQ(reachOfMail(environment), ApplicationReach::absent);
    home.write("post", "a file");
    EXPECT_EQ(reachOfMail(environment), ApplicationReach::absent);
    environment.variables.clear();
    std::filesystem::create_directories(home / "Mail");
    EXPECT_EQ(reachOfMail(environment), ApplicationReach::ready);
}

TEST(TimerSleeperTests, WakesAfterTheTime) {
    constexpr std::chrono::milliseconds duration(5);
    const auto start = std::chrono::steady_clock::now();
    TimerSleeper sleeper;
    runTask(sleeper.sleep(duration));
    EXPECT_GE(std::chrono::steady_clock::now() - start, duration);
}

} // namespace
} // namespace vesk::test
