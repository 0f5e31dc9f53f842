#include "VeskCapabilityBroker/CapabilityRequests.hpp"
#include "VeskShellCore/CapabilityStatuses.hpp"
#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <cerrno>
#include <gtest/gtest.h>
#include <system_error>

namespace vesk {
namespace {

using test::FakePlatform;
using test::runTask;
using Requests = std::vector<std::string>;

std::string accessRequest(PrivacyService service) { return "access " + std::to_string(static_cast<int>(service)); }

const std::pair<CapabilityKind, PrivacyService> onceOnlyKinds[] = {
    {CapabilityKind::microphone, PrivacyService::microphone},
    {CapabilityKind::calendar, PrivacyService::events},
    {CapabilityKind::reminders, PrivacyService::reminders},
    {CapabilityKind::contacts, PrivacyService::contacts},
};

CapabilityAuthorizationState stateIn(const CapabilityStatusReport& report, CapabilityKind kind) {
    for (const auto& status : report.capabilities)
        if (status.kind == kind) return status.state;
    ADD_FAILURE() << "no status of " << rawValue(kind);
    return {};
}

TEST(CapabilityRequests, PromptOnceKindsAreAskedOnlyWhileNotDetermined) {
    for (const auto& [kind, service] : onceOnlyKinds)
        for (const int status : {0, 1, 2, 3, 4, -1}) {
            SCOPED_TRACE(std::string(rawValue(kind)) + " at " + std::to_string(status));
            FakePlatform platform;
            platform.fakeConsent.statuses[service] = status;
            runTask(requestCapability(platform, kind));
            EXPECT_EQ(platform.fakeConsent.requests, status == 0 ? Requests{accessRequest(service)} : Requests{});
        }
}

TEST(CapabilityRequests, OnlyTheFreshReportTellsTheOutcome) {
    for (const auto& [kind, service] : onceOnlyKinds) {
        SCOPED_TRACE(rawValue(kind));
        FakePlatform platform;
        platform.fakeConsent.answer = {.granted = true, .error = "it went wrong"};
        platform.fakeConsent.statusAfterAnswer = 2;
        const auto report = runTask(requestCapability(platform, kind));
        EXPECT_EQ(stateIn(report, kind), CapabilityAuthorizationState::denied);
    }
}

TEST(CapabilityRequests, ScreenAndTrustAreAskedWhateverTheState) {
    for (const bool already : {false, true}) {
        SCOPED_TRACE(already);
        for (const auto kind : {CapabilityKind::screenRecording, CapabilityKind::systemAudio}) {
            FakePlatform platform;
            platform.fakeConsent.screenCapture = already;
            runTask(requestCapability(platform, kind));
            EXPECT_EQ(platform.fakeConsent.requests, Requests{"screen"});
        }
        FakePlatform platform;
        platform.fakeConsent.processTrusted = already;
        runTask(requestCapability(platform, CapabilityKind::accessibility));
        EXPECT_EQ(platform.fakeConsent.requests, Requests{"trust"});
    }
}

TEST(CapabilityRequests, WhatNoProgramCanAskForPromptsNothing) {
    for (const auto kind : {CapabilityKind::fullDiskAccess, CapabilityKind::iCloud}) {
        SCOPED_TRACE(rawValue(kind));
        FakePlatform platform;
        const auto report = runTask(requestCapability(platform, kind));
        EXPECT_TRUE(platform.fakeConsent.requests.empty());
        EXPECT_EQ(report, runTask(capabilityReport(platform)));
    }
}

TEST(CapabilityRequests, ARequestThatCannotBeSentFailsNobody) {
    FakePlatform platform;
    platform.fakeConsent.onPrompt = [] { throw ErrorRecord("Consent", 1, "No way to ask."); };
    for (const auto kind : allCapabilityKinds) EXPECT_NO_THROW(runTask(requestCapability(platform, kind)));
    platform.fakeConsent.onPrompt = [] { throw std::system_error(EAGAIN, std::generic_category(), "thread"); };
    for (const auto kind : allCapabilityKinds) EXPECT_NO_THROW(runTask(requestCapability(platform, kind)));
}

TEST(CapabilityRequests, EventAndReminderAccessReturnTheAnswer) {
    FakePlatform platform;
    EXPECT_FALSE(runTask(requestEventAccess(platform)));
    platform.fakeConsent.answer.granted = true;
    EXPECT_TRUE(runTask(requestEventAccess(platform)));
    EXPECT_TRUE(runTask(requestReminderAccess(platform)));
    EXPECT_EQ(platform.fakeConsent.requests,
              (Requests{accessRequest(PrivacyService::events), accessRequest(PrivacyService::events),
                        accessRequest(PrivacyService::reminders)}));
    EXPECT_EQ(platform.fakeLogQueue.waiting(), 0U) << "this request logs nothing";
}

struct GateFault {
    std::int64_t code;
    std::string message;
};

std::optional<GateFault> gate(FakePlatform& platform, CapabilityKind kind) {
    try {
        runTask(ensureCapabilityGranted(platform, kind));
        return std::nullopt;
    } catch (const ErrorRecord& error) {
        EXPECT_EQ(error.domain(), "VeskCapabilityBroker");
        return GateFault{error.code(), error.description()};
    }
}

TEST(CapabilityGate, PassesWhatIsGranted) {
    FakePlatform platform;
    platform.fakeConsent.statuses[PrivacyService::contacts] = 3;
    EXPECT_FALSE(gate(platform, CapabilityKind::contacts));
}

TEST(CapabilityGate, TriesTheRequestFirst) {
    FakePlatform platform;
    platform.fakeConsent.statusAfterAnswer = 3;
    EXPECT_FALSE(gate(platform, CapabilityKind::contacts));
    EXPECT_EQ(platform.fakeConsent.requests, Requests{accessRequest(PrivacyService::contacts)});
}

TEST(CapabilityGate, RefusalNamesStateDetailAndRemedy) {
    FakePlatform platform;
    platform.fakeConsent.statuses[PrivacyService::events] = 2;
    const auto fault = gate(platform, CapabilityKind::calendar);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->code, 75);
    EXPECT_EQ(fault->message, "Calendar access is not granted after Vesk requested it (state=denied). Calendar access "
                              "was denied for the native broker. Enable Calendar access for Vesk in System Settings.");
}

TEST(CapabilityGate, RefusalWithoutRemedyEndsWithTheDetail) {
    FakePlatform platform;
    platform.fakeConsent.statuses[PrivacyService::events] = 1;
    const auto fault = gate(platform, CapabilityKind::calendar);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->code, 75);
    EXPECT_EQ(fault->message, "Calendar access is not granted after Vesk requested it (state=restricted). Calendar "
                              "access is restricted by macOS or device policy.");
}

TEST(CapabilityGate, UsesTheTitleThatPeopleRead) {
    FakePlatform platform;
    const auto fault = gate(platform, CapabilityKind::accessibility);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->message.substr(0, 35), "Computer control access is not gran");
}

TEST(CapabilityGate, AReportWithoutTheCapabilityFails) {
    FakePlatform platform;
    const auto fault = gate(platform, CapabilityKind::iCloud);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->code, 74);
    EXPECT_EQ(fault->message, "iCloud access request did not return a capability status.");
}

const std::pair<CapabilityKind, std::string> scriptedKinds[] = {{CapabilityKind::mail, "com.apple.mail"},
                                                                {CapabilityKind::messages, "com.apple.MobileSMS"}};

TEST(CapabilityRequests, TheReportShowsWhatTheRequestOfAnApplicationLearned) {
    for (const auto& [kind, identifier] : scriptedKinds) {
        SCOPED_TRACE(identifier);
        FakePlatform platform;
        platform.fakeAutomation.installed = {identifier};
        platform.fakeAutomation.results = {{identifier, -1744}};
        platform.fakeAutomation.resultAfterAnswer = -1743;
        const auto report = runTask(requestCapability(platform, kind));
        EXPECT_EQ(stateIn(report, kind), CapabilityAuthorizationState::denied);
        EXPECT_EQ(report.capabilities.size(), 10U);
        EXPECT_EQ(platform.fakeAutomation.calls, Requests{"ask " + identifier});
    }
}

TEST(CapabilityRequests, TheRequestOfMailOverridesThePassiveProbe) {
    FakePlatform platform;
    platform.fakeAutomation.installed = {"com.apple.mail"};
    platform.fakeAutomation.results = {{"com.apple.mail", 0}};
    platform.fakeMail.outcome = MailScriptFailed{"AppleEvent timed out."};
    const auto report = runTask(requestCapability(platform, CapabilityKind::mail));
    EXPECT_EQ(stateIn(report, CapabilityKind::mail), CapabilityAuthorizationState::notDetermined);
    EXPECT_EQ(stateIn(runTask(capabilityReport(platform)), CapabilityKind::mail),
              CapabilityAuthorizationState::granted);
}

TEST(CapabilityGate, AnApplicationThatIsNotInstalledIsRefused) {
    FakePlatform platform;
    const auto fault = gate(platform, CapabilityKind::mail);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->code, 75);
    EXPECT_EQ(fault->message, "Mail access is not granted after Vesk requested it (state=unavailable). Mail.app is not "
                              "installed on this Mac.");
}

TEST(OpenSystemSettings, LaunchesTheOpenerWithThePane) {
    const std::string prefix = "x-apple.systempreferences:com.apple.preference.security?";
    for (const auto& [kind, pane] : {std::pair{CapabilityKind::systemAudio, "Privacy_ScreenCapture"},
                                     std::pair{CapabilityKind::mail, "Privacy_Automation"},
                                     std::pair{CapabilityKind::messages, "Privacy_Automation"}}) {
        FakePlatform platform;
        openSystemSettings(platform, kind);
        EXPECT_EQ(platform.fakeSettingsOpener.launched, Requests{prefix + pane});
        EXPECT_TRUE(platform.fakeSettingsOpener.opened.empty());
    }
}

TEST(OpenSystemSettings, FallsBackWhereTheOpenerCannotStart) {
    FakePlatform platform;
    platform.fakeSettingsOpener.launches = false;
    openSystemSettings(platform, CapabilityKind::calendar);
    EXPECT_EQ(platform.fakeSettingsOpener.opened, platform.fakeSettingsOpener.launched);
    EXPECT_EQ(platform.fakeSettingsOpener.opened.size(), 1U);
}

TEST(OpenSystemSettings, AKindWithoutAPaneOpensNothing) {
    FakePlatform platform;
    platform.fakeSettingsOpener.launches = false;
    openSystemSettings(platform, CapabilityKind::iCloud);
    EXPECT_TRUE(platform.fakeSettingsOpener.launched.empty());
    EXPECT_TRUE(platform.fakeSettingsOpener.opened.empty());
}

} // namespace
} // namespace vesk
