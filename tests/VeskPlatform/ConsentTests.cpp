#include "VeskPlatform/Linux/ConsentPrompt.hpp"
#include "VeskPlatform/Linux/SqliteConnection.hpp"
#include "VeskPlatform/Linux/SqliteConsent.hpp"
#include "tests/contracts/ConsentContract.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/fakes/FakeConsent.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <thread>

namespace vesk::test {
namespace {

struct ScriptedPrompt : ConsentPrompt {
    std::optional<GivenAnswer> answer;
    std::vector<std::string> asked;
    std::thread::id thread;
    std::optional<GivenAnswer> ask(const std::string& title, const std::string& summary) override {
        asked.push_back(title + "/" + summary);
        thread = std::this_thread::get_id();
        return answer;
    }
};

struct FakeConsentWorld {
    FakeConsent fake;
    Consent& consent() { return fake; }
    void decide(PrivacyService service, int status) { fake.statuses[service] = status; }
    void answerWith(bool granted) {
        fake.answer.granted = granted;
        fake.statusAfterAnswer = granted ? 3 : 2;
    }
};

struct SqliteConsentWorld {
    TemporaryFolder folder;
    FakeClock clock;
    ScriptedPrompt prompt;
    ConsentDatabase database{folder / "state", std::chrono::milliseconds(20)};
    SqliteConsent real{database, prompt, clock, [](const std::string& id) { return std::pair("T " + id, "S " + id); }};
    Consent& consent() { return real; }
    void decide(PrivacyService service, int status) {
        const std::map<PrivacyService, std::string> rows{{PrivacyService::microphone, "microphone"},
                                                         {PrivacyService::events, "calendar"},
                                                         {PrivacyService::reminders, "reminders"},
                                                         {PrivacyService::contacts, "contacts"}};
        database.decide({rows.at(service)}, {static_cast<ConsentState>(status), "test", "now"});
    }
    void answerWith(bool granted) {
        prompt.answer = GivenAnswer{granted ? PromptAnswer::grant : PromptAnswer::deny, "dialog"};
    }
};

using Worlds = ::testing::Types<FakeConsentWorld, SqliteConsentWorld>;
INSTANTIATE_TYPED_TEST_SUITE_P(All, ConsentContract, Worlds);

struct SqliteConsentTests : ConsentContract<SqliteConsentWorld> {};

TEST_F(SqliteConsentTests, TheQuestionWaitsOnAnotherThread) {
    world.answerWith(true);
    run(world.consent().requestAccess(PrivacyService::events));
    EXPECT_THAT(world.prompt.asked, ::testing::ElementsAre("T calendar/S calendar"));
    EXPECT_NE(world.prompt.thread, std::this_thread::get_id());
    EXPECT_EQ(world.database.decisions().at("calendar"),
              (ConsentDecision{ConsentState::granted, "dialog", "2026-04-26T08:30:00.000Z"}));
}

TEST_F(SqliteConsentTests, NobodyToAskAndNoDecisionLeaveItUndetermined) {
    for (const auto& answer :
         {std::optional<GivenAnswer>(), std::optional(GivenAnswer{PromptAnswer::undecided, "dialog"})}) {
        world.prompt.answer = answer;
        EXPECT_FALSE(run(world.consent().requestAccess(PrivacyService::events)).granted);
        EXPECT_EQ(world.consent().authorizationStatus(PrivacyService::events), 0);
        EXPECT_FALSE(world.folder.exists("state"));
    }
}

TEST_F(SqliteConsentTests, OnlyTheUndeterminedIsAskedAbout) {
    world.answerWith(true);
    for (const int status : {1, 2, 3}) {
        world.decide(PrivacyService::events, status);
        EXPECT_EQ(run(world.consent().requestAccess(PrivacyService::events)).granted, status == 3);
    }
    EXPECT_TRUE(world.prompt.asked.empty());
}

TEST_F(SqliteConsentTests, ScreenAndTrustHaveRowsOfTheirOwn) {
    world.answerWith(true);
    run(world.consent().requestScreenCapture());
    EXPECT_TRUE(world.consent().preflightScreenCapture());
    EXPECT_FALSE(world.consent().isProcessTrusted());
    run(world.consent().promptForProcessTrust());
    EXPECT_TRUE(world.consent().isProcessTrusted());
    run(world.consent().requestScreenCapture());
    EXPECT_THAT(world.prompt.asked,
                ::testing::ElementsAre("T screen_recording/S screen_recording", "T accessibility/S accessibility"));
}

TEST_F(SqliteConsentTests, SystemAudioIsScreenRecordingsRow) {
    EXPECT_EQ(consentRow("system_audio"), "screen_recording");
    EXPECT_EQ(consentRow("screen_recording"), "screen_recording");
    EXPECT_EQ(consentRow("mail"), "mail");
}

TEST_F(SqliteConsentTests, AnUnusableDatabaseIsAnUnknownState) {
    world.folder.write("state/consent.sqlite", std::string(8192, 'x'));
    for (const PrivacyService service : allServices) EXPECT_EQ(world.consent().authorizationStatus(service), -1);
    EXPECT_FALSE(world.consent().preflightScreenCapture());
    EXPECT_FALSE(world.consent().isProcessTrusted());
    world.answerWith(true);
    EXPECT_FALSE(run(world.consent().requestAccess(PrivacyService::events)).granted);
    EXPECT_TRUE(world.prompt.asked.empty());
}

TEST_F(SqliteConsentTests, ALockIsWaitedForOnce) {
    using namespace std::chrono_literals;
    constexpr auto patience = 200ms;
    world.decide(PrivacyService::events, 3);
    SqliteConsent consent(ConsentDatabase(world.folder / "state", patience), world.prompt, world.clock,
                          [](const std::string& id) { return std::pair(id, id); });
    SqliteConnection other(world.database.path(), 0ms);
    other.run("BEGIN EXCLUSIVE");
    const auto start = std::chrono::steady_clock::now();
    for (int report = 0; report < 3; ++report)
        for (const PrivacyService service : allServices) EXPECT_EQ(consent.authorizationStatus(service), -1);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5 * patience) << "12 probes";
    other.run("ROLLBACK");
    EXPECT_EQ(consent.authorizationStatus(PrivacyService::events), 3);
}

TEST_F(SqliteConsentTests, AnAnswerThatCannotBeStoredIsNoGrant) {
    world.folder.write("state", "a file in the folder's place");
    world.answerWith(true);
    const AccessAnswer answer = run(world.consent().requestAccess(PrivacyService::events));
    EXPECT_FALSE(answer.granted);
    EXPECT_THAT(answer.error.value_or(""), ::testing::HasSubstr(world.folder / "state"));
}

} // namespace
} // namespace vesk::test
