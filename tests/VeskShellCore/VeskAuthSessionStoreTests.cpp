#include "VeskShellCore/VeskAuthPKCE.hpp"
#include "VeskShellCore/VeskAuthSessionStore.hpp"
#include "VeskSupport/Text.hpp"
#include "tests/fakes/FakePlatform.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

constexpr const char* installationKey = "app.veskhq.vesk.auth.installation-id";
constexpr const char* pendingKey = "app.veskhq.vesk.auth.pending-session";
constexpr const char* signOutKey = "app.veskhq.vesk.auth.sign-out-transaction";
constexpr const char* desiredKey = "app.veskhq.vesk.assistant-desired-state";

class VeskAuthSessionStoreTests : public testing::Test {
protected:
    FakePlatform platform;
    VeskAuthSessionStore store{platform};

    UserDefaults& defaults() { return platform.fakeUserDefaults; }
};

TEST_F(VeskAuthSessionStoreTests, TheInstallationIsMadeOnceInLowerCase) {
    const std::string made = store.installationID();
    EXPECT_EQ(made, "01020304-0506-4708-890a-0b0c0d0e0f10");
    EXPECT_EQ(store.installationID(), made);
    EXPECT_EQ(VeskAuthSessionStore(platform).installationID(), made);
    EXPECT_EQ(defaults().string(installationKey), made);
}

TEST_F(VeskAuthSessionStoreTests, AnInstallationOfBlanksIsReplaced) {
    defaults().setString(installationKey, " \n");
    const std::string made = store.installationID();
    EXPECT_EQ(made, lowercased(made));
    EXPECT_EQ(defaults().string(installationKey), made);
}

TEST_F(VeskAuthSessionStoreTests, AnInstallationWithBlanksAroundItIsTrimmedButNotChanged) {
    defaults().setString(installationKey, " AB-CD\n");
    EXPECT_EQ(store.installationID(), "AB-CD");
    EXPECT_EQ(defaults().string(installationKey), " AB-CD\n");
}

TEST_F(VeskAuthSessionStoreTests, TheInstallationSurvivesASignOut) {
    const std::string made = store.installationID();
    store.prepareSignIn("dana@example.com");
    store.persistSignOutTransaction({{true, true}, VeskAuthSignOutPhase::signedOut});
    store.clearPendingSession();
    store.clearSignOutTransaction();
    EXPECT_EQ(store.installationID(), made);
}

TEST_F(VeskAuthSessionStoreTests, PreparesASignIn) {
    const auto prepared = store.prepareSignIn(" Dana@Example.COM\n");
    EXPECT_EQ(prepared.pendingSession.email, "dana@example.com");
    EXPECT_EQ(prepared.pendingSession.codeVerifier,
              "01020304-0506-4708-890A-0B0C0D0E0F1011121314-1516-4718-991A-1B1C1D1E1F20");
    EXPECT_EQ(prepared.pendingSession.clientState,
              "21222324-2526-4728-A92A-2B2C2D2E2F3031323334-3536-4738-B93A-3B3C3D3E3F40");
    EXPECT_EQ(prepared.pendingSession.createdAt.instant, platform.fakeClock.time);
    EXPECT_EQ(prepared.pendingSession.assistantResumeIntent, std::nullopt);
    EXPECT_EQ(prepared.codeChallenge, VeskAuthPKCE::s256CodeChallenge(prepared.pendingSession.codeVerifier));
    EXPECT_EQ(prepared.installationID, store.installationID());
    EXPECT_EQ(store.pendingSession(), prepared.pendingSession);
    EXPECT_EQ(defaults().data(pendingKey),
              R"({"clientState":"21222324-2526-4728-A92A-2B2C2D2E2F3031323334-3536-4738-B93A-3B3C3D3E3F40",)"
              R"("codeVerifier":"01020304-0506-4708-890A-0B0C0D0E0F1011121314-1516-4718-991A-1B1C1D1E1F20",)"
              R"("createdAt":798885000,"email":"dana@example.com"})");
}

TEST_F(VeskAuthSessionStoreTests, OnlyTheNewestSignInIsPending) {
    const auto first = store.prepareSignIn("dana@example.com"), second = store.prepareSignIn("dana@example.com");
    EXPECT_NE(first.pendingSession.codeVerifier, second.pendingSession.codeVerifier);
    EXPECT_NE(first.pendingSession.clientState, second.pendingSession.clientState);
    EXPECT_NE(second.pendingSession.codeVerifier, second.pendingSession.clientState);
    EXPECT_EQ(store.pendingSession(), second.pendingSession);
    EXPECT_EQ(second.codeChallenge, VeskAuthPKCE::s256CodeChallenge(store.pendingSession()->codeVerifier));
    EXPECT_EQ(first.installationID, second.installationID);
}

TEST_F(VeskAuthSessionStoreTests, ASignInTakesTheDesiredStateAlong) {
    store.persistAssistantDesiredState({true, false});
    EXPECT_EQ(store.prepareSignIn("a").pendingSession.assistantResumeIntent,
              VeskAuthAssistantResumeIntent(true, false));
}

TEST_F(VeskAuthSessionStoreTests, ASignOutsIntentComesBeforeTheDesiredState) {
    store.persistAssistantDesiredState({true, false});
    store.persistSignOutTransaction({{true, true}, VeskAuthSignOutPhase::signedOut});
    EXPECT_EQ(store.prepareSignIn("a").pendingSession.assistantResumeIntent, VeskAuthAssistantResumeIntent(true, true));
    store.clearSignOutTransaction();
    EXPECT_EQ(store.prepareSignIn("a").pendingSession.assistantResumeIntent,
              VeskAuthAssistantResumeIntent(true, false));
}

TEST_F(VeskAuthSessionStoreTests, WhereNothingCanBeWrittenTheRequestIsMadeAllTheSame) {
    platform.fakeUserDefaults.full = true;
    const auto prepared = store.prepareSignIn("dana@example.com");
    EXPECT_EQ(prepared.codeChallenge, VeskAuthPKCE::s256CodeChallenge(prepared.pendingSession.codeVerifier));
    EXPECT_FALSE(prepared.installationID.empty());
    EXPECT_EQ(store.pendingSession(), std::nullopt);
}

TEST_F(VeskAuthSessionStoreTests, TheDesiredStateIsSeededOnce) {
    EXPECT_EQ(store.assistantDesiredState(), std::nullopt);
    EXPECT_EQ(store.seedAssistantDesiredStateIfAbsent(false, true), VeskAuthAssistantResumeIntent(true, true));
    EXPECT_EQ(defaults().data(desiredKey), R"({"wasInstalled":true,"wasRunning":true})");
    EXPECT_EQ(store.seedAssistantDesiredStateIfAbsent(true, false), VeskAuthAssistantResumeIntent(true, true));
    EXPECT_EQ(store.assistantDesiredState(), VeskAuthAssistantResumeIntent(true, true));
}

TEST_F(VeskAuthSessionStoreTests, AStoredStateIsReturnedAsItStands) {
    defaults().setData(desiredKey, R"({"wasInstalled":false,"wasRunning":true})");
    const auto intent = store.seedAssistantDesiredStateIfAbsent(true, false);
    EXPECT_FALSE(intent.wasInstalled);
    EXPECT_TRUE(intent.wasRunning);
    EXPECT_EQ(defaults().data(desiredKey), R"({"wasInstalled":false,"wasRunning":true})");
}

TEST_F(VeskAuthSessionStoreTests, AStateThatDoesNotDecodeIsSeededAnew) {
    defaults().setData(desiredKey, R"({"wasInstalled":true})");
    EXPECT_EQ(store.seedAssistantDesiredStateIfAbsent(true, false), VeskAuthAssistantResumeIntent(true, false));
    EXPECT_EQ(defaults().data(desiredKey), R"({"wasInstalled":true,"wasRunning":false})");
}

TEST_F(VeskAuthSessionStoreTests, AnyPhaseMayFollowAny) {
    using enum VeskAuthSignOutPhase;
    for (const auto phase : {signedOut, stopping, assistantStopped, stopping}) {
        store.persistSignOutTransaction({{true, false}, phase});
        EXPECT_EQ(store.signOutTransaction(), (VeskAuthSignOutTransaction{{true, false}, phase}));
    }
    EXPECT_EQ(defaults().data(signOutKey),
              R"({"phase":"stopping","resumeIntent":{"wasInstalled":true,"wasRunning":false}})");
    store.clearSignOutTransaction();
    EXPECT_EQ(store.signOutTransaction(), std::nullopt);
    EXPECT_FALSE(defaults().data(signOutKey));
}

TEST_F(VeskAuthSessionStoreTests, WhatDoesNotDecodeReadsAsNothingAndStays) {
    const std::string unknownPhase = R"({"phase":"done","resumeIntent":{"wasInstalled":true,"wasRunning":true}})";
    defaults().setData(signOutKey, unknownPhase);
    defaults().setData(pendingKey, "{");
    defaults().setData(desiredKey, "\xFF");
    EXPECT_EQ(store.signOutTransaction(), std::nullopt);
    EXPECT_EQ(store.pendingSession(), std::nullopt);
    EXPECT_EQ(store.assistantDesiredState(), std::nullopt);
    EXPECT_EQ(defaults().data(signOutKey), unknownPhase);
    EXPECT_EQ(defaults().data(pendingKey), "{");
    store.persistSignOutTransaction({{}, VeskAuthSignOutPhase::stopping});
    EXPECT_TRUE(store.signOutTransaction());
}

TEST_F(VeskAuthSessionStoreTests, AStringIsNoRecord) {
    defaults().setString(desiredKey, R"({"wasInstalled":true,"wasRunning":true})");
    EXPECT_EQ(store.assistantDesiredState(), std::nullopt);
}

TEST_F(VeskAuthSessionStoreTests, APendingSessionNeverExpiresHere) {
    const VeskPendingAuthSession session{.email = "a", .codeVerifier = "b", .clientState = "c"};
    store.persistPendingSession(session);
    platform.fakeClock.time += std::chrono::years(40);
    EXPECT_EQ(store.pendingSession(), session);
    store.clearPendingSession();
    EXPECT_EQ(store.pendingSession(), std::nullopt);
    EXPECT_FALSE(defaults().data(pendingKey));
}

} // namespace
} // namespace vesk::test
