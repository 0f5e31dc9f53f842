#include "VeskShellCore/AuthSessionModels.hpp"
#include "tests/VeskShellCore/GoldenRecords.hpp"

namespace vesk::test {
namespace {

using namespace std::chrono_literals;

TEST(AuthSessionModels, ARunningAssistantIsAnInstalledOne) {
    EXPECT_TRUE(VeskAuthAssistantResumeIntent(false, true).wasInstalled);
    EXPECT_TRUE(VeskAuthAssistantResumeIntent(true, false).wasInstalled);
    EXPECT_FALSE(VeskAuthAssistantResumeIntent(true, false).wasRunning);
    EXPECT_EQ(VeskAuthAssistantResumeIntent(false, false), VeskAuthAssistantResumeIntent());
}

TEST(AuthSessionModels, AnIntentIsReadAsItStands) {
    const std::string json = "{\n  \"wasInstalled\" : false,\n  \"wasRunning\" : true\n}";
    const auto intent = expectGolden<VeskAuthAssistantResumeIntent>(json);
    EXPECT_FALSE(intent.wasInstalled);
    EXPECT_TRUE(intent.wasRunning);
    expectRequired<VeskAuthAssistantResumeIntent>(json, {"wasInstalled", "wasRunning"});
}

TEST(AuthSessionModels, APendingSessionHasItsDateAsSecondsSince2001) {
    const std::string json = R"({
  "assistantResumeIntent" : {
    "wasInstalled" : true,
    "wasRunning" : false
  },
  "clientState" : "state",
  "codeVerifier" : "verifier",
  "createdAt" : 798885000.125,
  "email" : "dana@example.com"
})";
    const auto session = expectGolden<VeskPendingAuthSession>(json);
    EXPECT_EQ(session.createdAt.instant,
              Instant(std::chrono::sys_days{std::chrono::year{2026} / 4 / 26} + 8h + 30min + 125ms));
    EXPECT_EQ(session.assistantResumeIntent, VeskAuthAssistantResumeIntent(true, false));
    expectRequired<VeskPendingAuthSession>(json, {"email", "codeVerifier", "clientState", "createdAt"});
}

TEST(AuthSessionModels, APendingSessionMayHaveNoIntent) {
    const std::string json = R"({
  "clientState" : "",
  "codeVerifier" : "",
  "createdAt" : 0,
  "email" : ""
})";
    EXPECT_EQ(expectGolden<VeskPendingAuthSession>(json).createdAt.instant,
              Instant(std::chrono::sys_days{std::chrono::year{2001} / 1 / 1}));
}

TEST(AuthSessionModels, EveryMillisecondComesBack) {
    for (std::int64_t offset = -1'500; offset < 1'500; ++offset) {
        for (const std::int64_t base : {0LL, 798'885'000'000LL, -999'999'999'999LL, 4'102'444'800'000LL}) {
            const ReferenceDate date{referenceInstant + std::chrono::milliseconds(base + offset)};
            JsonValue json = parseJson(writeJson(toJson(date)));
            ReferenceDate again;
            read(json, records::Path(), again);
            ASSERT_EQ(again, date) << base + offset;
        }
    }
}

TEST(AuthSessionModels, WhatIsNoDateIsRefused) {
    for (const char* text : {"\"2026-04-26T08:30:00Z\"", "null", "true", "1e300", "-1e13", "[]"}) {
        JsonValue json = parseJson(text);
        ReferenceDate date;
        EXPECT_THROW(read(json, records::Path(), date), DecodingError) << text;
    }
}

TEST(AuthSessionModels, ASignOutHasItsPhaseByName) {
    for (const auto& [phase, name] : {std::pair{VeskAuthSignOutPhase::stopping, "stopping"},
                                      {VeskAuthSignOutPhase::assistantStopped, "assistant_stopped"},
                                      {VeskAuthSignOutPhase::signedOut, "signed_out"}}) {
        const std::string json = std::string("{\n  \"phase\" : \"") + name
                                 + "\",\n  \"resumeIntent\" : {\n    \"wasInstalled\" : true,\n    \"wasRunning\" : "
                                   "true\n  }\n}";
        const auto transaction = expectGolden<VeskAuthSignOutTransaction>(json);
        EXPECT_EQ(transaction.phase, phase);
        EXPECT_EQ(transaction.resumeIntent, VeskAuthAssistantResumeIntent(true, true));
        expectRequired<VeskAuthSignOutTransaction>(json, {"phase", "resumeIntent"});
    }
}

} // namespace
} // namespace vesk::test
