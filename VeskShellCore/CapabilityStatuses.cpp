#include "VeskShellCore/CapabilityStatuses.hpp"

#include "VeskPlatform/Consent.hpp"
#include "VeskPlatform/Environment.hpp"
#include "VeskShellCore/BrokerPaths.hpp"
#include "VeskShellCore/FullDiskAccessSupport.hpp"
#include "VeskShellCore/ICloudCapabilitySupport.hpp"
#include "VeskShellCore/MailCapabilitySupport.hpp"
#include "VeskShellCore/MessagesCapabilitySupport.hpp"

#include <algorithm>
#include <array>
#include <string_view>

namespace vesk {
namespace {

using enum CapabilityAuthorizationState;

/// What one answer of a probe means. An empty remediation is an absent one.
struct AnswerMeaning {
    int answer;
    CapabilityAuthorizationState state;
    std::string_view detail;
    std::string_view remediation;
};

/// Stands for every answer that the rows above it do not name.
constexpr int anyOther = -1;
constexpr int no = 0, yes = 1;
// The numbers of AuthorizationStatus.
constexpr int undetermined = 0, restrictedByPolicy = 1, refused = 2, full = 3, partial = 4;

constexpr auto screenRecordingAnswers = std::to_array<AnswerMeaning>({
    {yes, granted, "ScreenCaptureKit access is available to the native broker.", ""},
    {anyOther, denied, "macOS has not granted screen recording to the native broker yet.",
     "Grant Screen Recording to Vesk in System Settings, then relaunch capture flows."},
});

constexpr auto systemAudioAnswers = std::to_array<AnswerMeaning>({
    {yes, granted, "System audio capture can be requested through the same ScreenCaptureKit authorization.", ""},
    {anyOther, denied, "System audio capture depends on Screen Recording authorization on macOS.",
     "Grant Screen Recording to Vesk to allow browser/system audio capture."},
});

constexpr auto microphoneAnswers = std::to_array<AnswerMeaning>({
    {full, granted, "Microphone access is available to the native broker.", ""},
    {undetermined, notDetermined, "Microphone access has not been requested yet.",
     "Request microphone access once from the shell before using live audio capture."},
    {refused, denied, "Microphone access was denied for the native broker.",
     "Enable microphone access for Vesk in System Settings."},
    {restrictedByPolicy, restricted, "Microphone access is restricted by macOS or device policy.", ""},
    {anyOther, unavailable, "Microphone authorization returned an unknown state.", ""},
});

constexpr auto accessibilityAnswers = std::to_array<AnswerMeaning>({
    {yes, granted, "Accessibility control is available to the native broker.", ""},
    {anyOther, denied, "Accessibility control has not been granted to the native broker.",
     "Grant Accessibility access to Vesk in System Settings to allow click/type/control actions."},
});

// Write-only access is too little for a calendar that is read, and enough for reminders.
constexpr auto calendarAnswers = std::to_array<AnswerMeaning>({
    {full, granted, "Calendar access is available to the native broker.", ""},
    {undetermined, notDetermined, "Calendar access has not been requested yet.",
     "Request calendar access once from the shell before using Apple Calendar features."},
    {refused, denied, "Calendar access was denied for the native broker.",
     "Enable Calendar access for Vesk in System Settings."},
    {partial, denied, "Calendar access was denied for the native broker.",
     "Enable Calendar access for Vesk in System Settings."},
    {restrictedByPolicy, restricted, "Calendar access is restricted by macOS or device policy.", ""},
    {anyOther, unavailable, "Calendar authorization returned an unknown state.", ""},
});

constexpr auto remindersAnswers = std::to_array<AnswerMeaning>({
    {full, granted, "Reminders access is available to the native broker.", ""},
    {partial, granted, "Reminders access is available to the native broker.", ""},
    {undetermined, notDetermined, "Reminders access has not been requested yet.",
     "Request reminders access once from the shell before using todo features."},
    {refused, denied, "Reminders access was denied for the native broker.",
     "Enable Reminders access for Vesk in System Settings."},
    {restrictedByPolicy, restricted, "Reminders access is restricted by macOS or device policy.", ""},
    {anyOther, unavailable, "Reminders authorization returned an unknown state.", ""},
});

constexpr auto contactsAnswers = std::to_array<AnswerMeaning>({
    {full, granted, "Contacts access is available to the native broker.", ""},
    {undetermined, notDetermined, "Contacts access has not been requested yet.",
     "Request Contacts access before looking up or saving people from Contacts."},
    {refused, denied, "Contacts access was denied for the native broker.",
     "Enable Contacts access for Vesk in System Settings."},
    {restrictedByPolicy, restricted, "Contacts access is restricted by macOS or device policy.", ""},
    {anyOther, unavailable, "Contacts authorization returned an unknown state.", ""},
});

/// The last row of `answers` is that of any other answer.
template <std::size_t count>
CapabilityStatus statusFor(CapabilityKind kind, const std::array<AnswerMeaning, count>& answers, int answer) {
    const auto found = std::find_if(answers.begin(), answers.end() - 1,
                                    [answer](const AnswerMeaning& meaning) { return meaning.answer == answer; });
    CapabilityStatus status;
    status.kind = kind;
    status.state = found->state;
    status.detail = found->detail;
    if (!found->remediation.empty()) status.remediation = found->remediation;
    return status;
}

/// Each gives the status of one capability, or none where there is nothing to tell of it.
using StatusSource = std::optional<CapabilityStatus> (*)(Platform& platform);

std::optional<CapabilityStatus> screenRecordingStatus(Platform& platform) {
    const int answer = platform.consent().preflightScreenCapture() ? yes : no;
    return statusFor(CapabilityKind::screenRecording, screenRecordingAnswers, answer);
}

std::optional<CapabilityStatus> systemAudioStatus(Platform& platform) {
    const int answer = platform.consent().preflightScreenCapture() ? yes : no;
    CapabilityStatus status = statusFor(CapabilityKind::systemAudio, systemAudioAnswers, answer);
    status.sharedAuthorizationWith = CapabilityKind::screenRecording;
    return status;
}

std::optional<CapabilityStatus> accessibilityStatus(Platform& platform) {
    const int answer = platform.consent().isProcessTrusted() ? yes : no;
    return statusFor(CapabilityKind::accessibility, accessibilityAnswers, answer);
}

template <CapabilityKind kind, PrivacyService service, const auto& answers>
std::optional<CapabilityStatus> serviceStatus(Platform& platform) {
    return statusFor(kind, answers, platform.consent().authorizationStatus(service));
}

std::optional<CapabilityStatus> messagesStatus(Platform& platform) {
    return VeskMessagesCapabilitySupport::status(platform, platform.mainBundle());
}

std::optional<CapabilityStatus> mailStatus(Platform& platform) {
    return VeskMailCapabilitySupport::status(platform, platform.mainBundle());
}

std::optional<CapabilityStatus> fullDiskAccessStatus(Platform& platform) {
    return VeskFullDiskAccessSupport::status(platform, platform.environment().homeDirectory());
}

std::optional<CapabilityStatus> iCloudStatus(Platform& platform) {
    return VeskICloudCapabilitySupport::configuredStatus(platform, platform.mainBundle());
}

/// In the order of asking. Sources that ask an application (Messages, then Mail) or look at the disk go first; the
/// list that comes out is put into the order of the kinds, iCloud last.
constexpr StatusSource statusSources[] = {
    messagesStatus,
    mailStatus,
    fullDiskAccessStatus,
    screenRecordingStatus,
    systemAudioStatus,
    serviceStatus<CapabilityKind::microphone, PrivacyService::microphone, microphoneAnswers>,
    accessibilityStatus,
    serviceStatus<CapabilityKind::calendar, PrivacyService::events, calendarAnswers>,
    serviceStatus<CapabilityKind::reminders, PrivacyService::reminders, remindersAnswers>,
    serviceStatus<CapabilityKind::contacts, PrivacyService::contacts, contactsAnswers>,
    iCloudStatus,
};

void replaceOrAppend(std::vector<CapabilityStatus>& statuses, CapabilityStatus status) {
    const auto sameKind = std::find_if(statuses.begin(), statuses.end(),
                                       [&](const CapabilityStatus& other) { return other.kind == status.kind; });
    if (sameKind == statuses.end())
        statuses.push_back(std::move(status));
    else
        *sameKind = std::move(status);
}

} // namespace

Task<std::vector<CapabilityStatus>> currentStatuses(Platform& platform) {
    std::vector<CapabilityStatus> statuses;
    statuses.reserve(allCapabilityKinds.size());
    for (const StatusSource source : statusSources)
        if (auto status = source(platform)) statuses.push_back(std::move(*status));
    std::stable_sort(statuses.begin(), statuses.end(),
                     [](const CapabilityStatus& a, const CapabilityStatus& b) { return a.kind < b.kind; });
    co_return statuses;
}

Task<CapabilityStatusReport> capabilityReport(Platform& platform, std::optional<CapabilityStatus> overriding) {
    CapabilityStatusReport report;
    report.capabilities = co_await currentStatuses(platform);
    if (overriding) replaceOrAppend(report.capabilities, std::move(*overriding));
    report.brokerPath = executableBrokerPath(platform);
    report.bundlePath = bundlePath(platform.mainBundle());
    co_return report;
}

} // namespace vesk
