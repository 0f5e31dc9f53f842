#include "VeskShellCore/CapabilityStatuses.hpp"
#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

using enum CapabilityAuthorizationState;

struct ProbeCase {
    CapabilityKind kind;
    int answer;
    CapabilityAuthorizationState state;
    std::string detail;
    std::optional<std::string> remediation;
};

constexpr auto absent = std::nullopt;

const ProbeCase probeCases[] = {
    {CapabilityKind::screenRecording, 1, granted, "ScreenCaptureKit access is available to the native broker.", absent},
    {CapabilityKind::screenRecording, 0, denied, "macOS has not granted screen recording to the native broker yet.",
     "Grant Screen Recording to Vesk in System Settings, then relaunch capture flows."},
    {CapabilityKind::systemAudio, 1, granted,
     "System audio capture can be requested through the same ScreenCaptureKit authorization.", absent},
    {CapabilityKind::systemAudio, 0, denied, "System audio capture depends on Screen Recording authorization on macOS.",
     "Grant Screen Recording to Vesk to allow browser/system audio capture."},
    {CapabilityKind::microphone, 3, granted, "Microphone access is available to the native broker.", absent},
    {CapabilityKind::microphone, 0, notDetermined, "Microphone access has not been requested yet.",
     "Request microphone access once from the shell before using live audio capture."},
    {CapabilityKind::microphone, 2, denied, "Microphone access was denied for the native broker.",
     "Enable microphone access for Vesk in System Settings."},
    {CapabilityKind::microphone, 1, restricted, "Microphone access is restricted by macOS or device policy.", absent},
    {CapabilityKind::microphone, 4, unavailable, "Microphone authorization returned an unknown state.", absent},
    {CapabilityKind::microphone, -1, unavailable, "Microphone authorization returned an unknown state.", absent},
    {CapabilityKind::accessibility, 1, granted, "Accessibility control is available to the native broker.", absent},
    {CapabilityKind::accessibility, 0, denied, "Accessibility control has not been granted to the native broker.",
     "Grant Accessibility access to Vesk in System Settings to allow click/type/control actions."},
    {CapabilityKind::calendar, 3, granted, "Calendar access is available to the native broker.", absent},
    {CapabilityKind::calendar, 0, notDetermined, "Calendar access has not been requested yet.",
     "Request calendar access once from the shell before using Apple Calendar features."},
    {CapabilityKind::calendar, 2, denied, "Calendar access was denied for the native broker.",
     "Enable Calendar access for Vesk in System Settings."},
    {CapabilityKind::calendar, 4, denied, "Calendar access was denied for the native broker.",
     "Enable Calendar access for Vesk in System Settings."},
    {CapabilityKind::calendar, 1, restricted, "Calendar access is restricted by macOS or device policy.", absent},
    {CapabilityKind::calendar, 5, unavailable, "Calendar authorization returned an unknown state.", absent},
    {CapabilityKind::calendar, -1, unavailable, "Calendar authorization returned an unknown state.", absent},
    {CapabilityKind::reminders, 3, granted, "Reminders access is available to the native broker.", absent},
    {CapabilityKind::reminders, 4, granted, "Reminders access is available to the native broker.", absent},
    {CapabilityKind::reminders, 0, notDetermined, "Reminders access has not been requested yet.",
     "Request reminders access once from the shell before using todo features."},
    {CapabilityKind::reminders, 2, denied, "Reminders access was denied for the native broker.",
     "Enable Reminders access for Vesk in System Settings."},
    {CapabilityKind::reminders, 1, restricted, "Reminders access is restricted by macOS or device policy.", absent},
    {CapabilityKind::reminders, 5, unavailable, "Reminders authorization returned an unknown state.", absent},
    {CapabilityKind::contacts, 3, granted, "Contacts access is available to the native broker.", absent},
    {CapabilityKind::contacts, 0, notDetermined, "Contacts access has not been requested yet.",
     "Request Contacts access before looking up or saving people from Contacts."},
    {CapabilityKind::contacts, 2, denied, "Contacts access was denied for the native broker.",
     "Enable Contacts access for Vesk in System Settings."},
    {CapabilityKind::contacts, 1, restricted, "Contacts access is restricted by macOS or device policy.", absent},
    {CapabilityKind::contacts, 4, unavailable, "Contacts authorization returned an unknown state.", absent},
    {CapabilityKind::contacts, 99, unavailable, "Contacts authorization returned an unknown state.", absent},
};

void giveAnswer(test::FakeConsent& consent, CapabilityKind kind, int answer) {
    switch (kind) {
    case CapabilityKind::screenRecording:
    case CapabilityKind::systemAudio: consent.screenCapture = answer != 0; break;
    case CapabilityKind::accessibility: consent.processTrusted = answer != 0; break;
    case CapabilityKind::microphone: consent.statuses[PrivacyService::microphone] = answer; break;
    case CapabilityKind::calendar: consent.statuses[PrivacyService::events] = answer; break;
    case CapabilityKind::reminders: consent.statuses[PrivacyService::reminders] = answer; break;
    case CapabilityKind::contacts: consent.statuses[PrivacyService::contacts] = answer; break;
    default: FAIL() << "no probe of " << rawValue(kind);
    }
}

TEST(CapabilityStatuses, EachAnswerHasItsStateAndTexts) {
    for (const ProbeCase& c : probeCases) {
        SCOPED_TRACE(std::string(rawValue(c.kind)) + " " + std::to_string(c.answer));
        test::FakePlatform platform;
        giveAnswer(platform.fakeConsent, c.kind, c.answer);
        const auto statuses = test::runTask(currentStatuses(platform));
        const auto found =
            std::find_if(statuses.begin(), statuses.end(), [&](const auto& status) { return status.kind == c.kind; });
        ASSERT_NE(found, statuses.end());
        EXPECT_EQ(found->state, c.state);
        EXPECT_EQ(found->detail, c.detail);
        EXPECT_EQ(found->remediation, c.remediation);
        const auto shared =
            c.kind == CapabilityKind::systemAudio ? std::optional(CapabilityKind::screenRecording) : std::nullopt;
        EXPECT_EQ(found->sharedAuthorizationWith, shared);
    }
}

TEST(CapabilityStatuses, ListIsInTheOrderOfTheKinds) {
    test::FakePlatform platform;
    const auto statuses = test::runTask(currentStatuses(platform));
    std::vector<std::string_view> ids;
    for (const auto& status : statuses) ids.push_back(status.id());
    EXPECT_EQ(
        ids, (std::vector<std::string_view>{"full_disk_access", "screen_recording", "system_audio", "microphone",
                                            "accessibility", "calendar", "reminders", "contacts", "messages", "mail"}));
}

TEST(CapabilityStatuses, ProbingPromptsNobodyAndStartsNothing) {
    test::FakePlatform platform;
    platform.fakeAutomation.installed = {"com.apple.mail", "com.apple.MobileSMS"};
    platform.fakeAutomation.results = {{"com.apple.mail", -1744}, {"com.apple.MobileSMS", -600}};
    test::runTask(currentStatuses(platform));
    EXPECT_TRUE(platform.fakeConsent.requests.empty());
    EXPECT_TRUE(platform.fakeAutomation.calls.empty());
    EXPECT_TRUE(platform.fakeMail.scripts.empty());
    EXPECT_TRUE(platform.fakeMessages.scripts.empty());
}

TEST(CapabilityStatuses, MessagesAndMailAreThoseOfTheirApplications) {
    test::FakePlatform platform;
    platform.fakeAutomation.installed = {"com.apple.mail"};
    platform.fakeAutomation.results = {{"com.apple.mail", 0}};
    const auto statuses = test::runTask(currentStatuses(platform));
    ASSERT_EQ(statuses.size(), 10U);
    EXPECT_EQ(statuses[8].kind, CapabilityKind::messages);
    EXPECT_EQ(statuses[8].detail, "Messages is not installed on this Mac.");
    EXPECT_EQ(statuses[9].kind, CapabilityKind::mail);
    EXPECT_EQ(statuses[9].state, granted);
}

TEST(CapabilityStatuses, TheCloudIsTheLastEntryWhereTheBuildHasOne) {
    test::FakePlatform platform;
    platform.fakeBundleInformation.dictionaries[platform.bundle.path] = {{"VeskICloudEnabled", {true}}};
    const auto statuses = test::runTask(currentStatuses(platform));
    ASSERT_EQ(statuses.size(), 11U);
    EXPECT_EQ(statuses.back().kind, CapabilityKind::iCloud);
    EXPECT_EQ(statuses.back().state, notDetermined);
}

TEST(CapabilityStatuses, FullDiskAccessIsThatOfTheUsersHome) {
    test::FakePlatform platform;
    EXPECT_EQ(test::runTask(currentStatuses(platform)).front().state, denied);
    platform.fakeFileManager.put("/home/dana/.keys", "x");
    const auto status = test::runTask(currentStatuses(platform)).front();
    EXPECT_EQ(status.kind, CapabilityKind::fullDiskAccess);
    EXPECT_EQ(status.state, granted);
}

CapabilityStatus made(CapabilityKind kind) {
    return {.kind = kind, .state = granted, .detail = "Made up.", .remediation = {}, .sharedAuthorizationWith = {}};
}

TEST(CapabilityReport, OverrideReplacesTheEntryOfItsKindInPlace) {
    test::FakePlatform platform;
    const auto plain = test::runTask(capabilityReport(platform));
    const auto report = test::runTask(capabilityReport(platform, made(CapabilityKind::microphone)));
    ASSERT_EQ(report.capabilities.size(), plain.capabilities.size());
    for (std::size_t i = 0; i < plain.capabilities.size(); ++i) {
        const bool overridden = plain.capabilities[i].kind == CapabilityKind::microphone;
        EXPECT_EQ(report.capabilities[i], overridden ? made(CapabilityKind::microphone) : plain.capabilities[i]);
    }
}

TEST(CapabilityReport, OverrideOfAnotherKindGoesToTheEnd) {
    test::FakePlatform platform;
    const auto plain = test::runTask(capabilityReport(platform));
    const auto report = test::runTask(capabilityReport(platform, made(CapabilityKind::iCloud)));
    ASSERT_EQ(report.capabilities.size(), plain.capabilities.size() + 1);
    EXPECT_EQ(report.capabilities.back(), made(CapabilityKind::iCloud));
}

TEST(CapabilityReport, PathsFollowTheExecutableRule) {
    test::FakePlatform platform;
    auto report = test::runTask(capabilityReport(platform));
    EXPECT_EQ(report.brokerPath, "/Applications/Vesk.app/Contents/Helpers/VeskCapabilityBroker");
    EXPECT_EQ(report.bundlePath, "/Applications/Vesk.app");

    platform.bundle = {.path = "/opt/bin", .executablePath = "/opt/bin/broker", .resourcesPath = {}};
    report = test::runTask(capabilityReport(platform));
    EXPECT_EQ(report.brokerPath, "/opt/bin/broker");
    EXPECT_EQ(report.bundlePath, std::nullopt);
    EXPECT_EQ(writeJson(toJson(report)).find("bundlePath"), std::string::npos);
}

} // namespace
} // namespace vesk
