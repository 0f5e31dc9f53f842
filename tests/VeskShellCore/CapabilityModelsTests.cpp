#include "VeskShellCore/CapabilityModels.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

using enum CapabilityAuthorizationState;

struct KindCase {
    CapabilityKind kind;
    std::string id, title, shortSummary, pane;
};

const KindCase kindCases[] = {
    {CapabilityKind::fullDiskAccess, "full_disk_access", "Full disk access",
     "Used only when a file request needs protected locations across this Mac.", "Privacy_AllFiles"},
    {CapabilityKind::screenRecording, "screen_recording", "Screen recording",
     "Used only when you ask Vesk to see what is on this Mac's screen.", "Privacy_ScreenCapture"},
    {CapabilityKind::systemAudio, "system_audio", "System audio", "Reserved for a future system-audio feature.",
     "Privacy_ScreenCapture"},
    {CapabilityKind::microphone, "microphone", "Microphone", "Reserved for a future live-voice feature.",
     "Privacy_Microphone"},
    {CapabilityKind::accessibility, "accessibility", "Computer control",
     "Used only when you ask Vesk to click, type, or control a Mac app.", "Privacy_Accessibility"},
    {CapabilityKind::calendar, "calendar", "Calendar", "Used when you ask Vesk to read or update Apple Calendar.",
     "Privacy_Calendars"},
    {CapabilityKind::reminders, "reminders", "Reminders", "Used when you ask Vesk to read or update Reminders.",
     "Privacy_Reminders"},
    {CapabilityKind::contacts, "contacts", "Contacts", "Used when you ask Vesk to look up or save someone in Contacts.",
     "Privacy_Contacts"},
    {CapabilityKind::messages, "messages", "Messages", "Used when you ask Vesk to read from or send through Messages.",
     "Privacy_Automation"},
    {CapabilityKind::mail, "mail", "Mail", "Used when you ask Vesk to read or summarize messages from Mail.",
     "Privacy_Automation"},
    {CapabilityKind::iCloud, "icloud", "iCloud", "Used for Vesk-owned iCloud files when iCloud is available.", ""},
};

TEST(CapabilityModels, ElevenKindsInOrderWithTheirTexts) {
    ASSERT_EQ(allCapabilityKinds.size(), std::size(kindCases));
    for (std::size_t i = 0; i < std::size(kindCases); ++i) {
        const KindCase& c = kindCases[i];
        SCOPED_TRACE(c.id);
        EXPECT_EQ(allCapabilityKinds[i], c.kind);
        EXPECT_EQ(rawValue(c.kind), c.id);
        EXPECT_EQ(fromRawValue<CapabilityKind>(c.id), c.kind);
        EXPECT_EQ(title(c.kind), c.title);
        EXPECT_EQ(shortSummary(c.kind), c.shortSummary);
        const auto url = systemSettingsURL(c.kind);
        if (c.pane.empty())
            EXPECT_EQ(url, std::nullopt);
        else
            EXPECT_EQ(url, "x-apple.systempreferences:com.apple.preference.security?" + c.pane);
    }
    EXPECT_EQ(fromRawValue<CapabilityKind>("calendars"), std::nullopt);
    EXPECT_EQ(fromRawValue<CapabilityKind>("Mail"), std::nullopt);
}

TEST(CapabilityModels, DirectRequestsByKindAndState) {
    const CapabilityAuthorizationState states[] = {granted, notDetermined, denied, restricted, unavailable};
    const auto allowedStates = [&](CapabilityKind kind) {
        std::vector<CapabilityAuthorizationState> result;
        for (const auto state : states)
            if (supportsDirectRequest(kind, state)) result.push_back(state);
        return result;
    };
    using States = std::vector<CapabilityAuthorizationState>;
    for (const auto kind : allCapabilityKinds) {
        SCOPED_TRACE(rawValue(kind));
        switch (kind) {
        case CapabilityKind::fullDiskAccess:
        case CapabilityKind::iCloud:
            EXPECT_FALSE(supportsDirectRequest(kind));
            EXPECT_EQ(allowedStates(kind), States{});
            break;
        case CapabilityKind::screenRecording:
        case CapabilityKind::systemAudio:
        case CapabilityKind::accessibility:
            EXPECT_TRUE(supportsDirectRequest(kind));
            EXPECT_EQ(allowedStates(kind), (States{notDetermined, denied, restricted, unavailable}));
            break;
        default: EXPECT_TRUE(supportsDirectRequest(kind)); EXPECT_EQ(allowedStates(kind), States{notDetermined});
        }
    }
}

TEST(CapabilityModels, OnlyGrantedIsGranted) {
    EXPECT_TRUE(isGranted(granted));
    for (const auto state : {notDetermined, denied, restricted, unavailable}) EXPECT_FALSE(isGranted(state));
}

TEST(CapabilityModels, RawWords) {
    const auto words = [](const auto& table) {
        std::vector<std::string> result;
        for (const auto& [value, raw] : table) result.emplace_back(raw);
        return result;
    };
    using Words = std::vector<std::string>;
    EXPECT_EQ(words(rawValueTable<CapabilityAuthorizationState>),
              (Words{"granted", "not_determined", "denied", "restricted", "unavailable"}));
    EXPECT_EQ(words(rawValueTable<CapabilityTodoView>), (Words{"open", "done", "all", "today"}));
    EXPECT_EQ(words(rawValueTable<CapabilityMailView>), (Words{"unread", "flagged", "recent"}));
    EXPECT_EQ(words(rawValueTable<CapabilityMouseButton>), (Words{"left", "right"}));
    EXPECT_EQ(words(rawValueTable<CapabilityKeyModifier>), (Words{"command", "shift", "option", "control"}));
    EXPECT_EQ(words(rawValueTable<CapabilityPDFPaperSize>), (Words{"letter", "a4"}));
}

template <class R> void expectGolden(const R& record, const std::string& golden) {
    EXPECT_EQ(writeJson(toJson(record)), golden);
    EXPECT_EQ(fromJson<R>(parseJson(golden)), record);
}

TEST(CapabilityModels, StatusWithAllFields) {
    const CapabilityStatus status{.kind = CapabilityKind::systemAudio,
                                  .state = notDetermined,
                                  .detail = "Off/on.",
                                  .remediation = "Turn it on.",
                                  .sharedAuthorizationWith = CapabilityKind::screenRecording};
    EXPECT_EQ(status.id(), "system_audio");
    expectGolden(status, R"({
  "detail" : "Off\/on.",
  "kind" : "system_audio",
  "remediation" : "Turn it on.",
  "sharedAuthorizationWith" : "screen_recording",
  "state" : "not_determined"
})");
}

TEST(CapabilityModels, StatusLeavesAbsentOptionalsOut) {
    const CapabilityStatus status{.kind = CapabilityKind::mail,
                                  .state = granted,
                                  .detail = "On.",
                                  .remediation = {},
                                  .sharedAuthorizationWith = {}};
    expectGolden(status, R"({
  "detail" : "On.",
  "kind" : "mail",
  "state" : "granted"
})");
}

TEST(CapabilityModels, RequestResponseCarriesTheReport) {
    const CapabilityRequestResponse response{
        .requested = CapabilityKind::iCloud,
        .report = {.brokerPath = "/opt/broker", .bundlePath = "/opt/Vesk.app", .capabilities = {}}};
    expectGolden(response, R"({
  "report" : {
    "brokerPath" : "\/opt\/broker",
    "bundlePath" : "\/opt\/Vesk.app",
    "capabilities" : [

    ]
  },
  "requested" : "icloud"
})");
}

TEST(CapabilityModels, AudioTranscriptionResponse) {
    const CapabilityAudioTranscriptionResponse response{
        .brokerPath = "b", .bundlePath = {}, .text = "Hello", .localeIdentifier = "en_US", .detail = "Heard."};
    expectGolden(response, R"({
  "brokerPath" : "b",
  "detail" : "Heard.",
  "localeIdentifier" : "en_US",
  "text" : "Hello"
})");
}

} // namespace
} // namespace vesk
