#pragma once

#include "VeskSupport/Records.hpp"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// The vocabulary of permissions, and the words that cross the broker's command line and its JSON.

namespace vesk {

/// A permission or service that the assistant may need. The raw value is its identifier, in JSON and as an argument.
enum class CapabilityKind {
    fullDiskAccess,
    screenRecording,
    systemAudio,
    microphone,
    accessibility,
    calendar,
    reminders,
    contacts,
    messages,
    mail,
    iCloud,
};

template <>
inline constexpr auto rawValueTable<CapabilityKind> = std::to_array<std::pair<CapabilityKind, std::string_view>>({
    {CapabilityKind::fullDiskAccess, "full_disk_access"},
    {CapabilityKind::screenRecording, "screen_recording"},
    {CapabilityKind::systemAudio, "system_audio"},
    {CapabilityKind::microphone, "microphone"},
    {CapabilityKind::accessibility, "accessibility"},
    {CapabilityKind::calendar, "calendar"},
    {CapabilityKind::reminders, "reminders"},
    {CapabilityKind::contacts, "contacts"},
    {CapabilityKind::messages, "messages"},
    {CapabilityKind::mail, "mail"},
    {CapabilityKind::iCloud, "icloud"},
});

enum class CapabilityAuthorizationState { granted, notDetermined, denied, restricted, unavailable };

template <>
inline constexpr auto rawValueTable<CapabilityAuthorizationState> =
    std::to_array<std::pair<CapabilityAuthorizationState, std::string_view>>({
        {CapabilityAuthorizationState::granted, "granted"},
        {CapabilityAuthorizationState::notDetermined, "not_determined"},
        {CapabilityAuthorizationState::denied, "denied"},
        {CapabilityAuthorizationState::restricted, "restricted"},
        {CapabilityAuthorizationState::unavailable, "unavailable"},
    });

constexpr bool isGranted(CapabilityAuthorizationState state) { return state == CapabilityAuthorizationState::granted; }

/// All kinds in declaration order.
inline constexpr auto allCapabilityKinds = [] {
    std::array<CapabilityKind, rawValueTable<CapabilityKind>.size()> kinds{};
    for (std::size_t i = 0; i < kinds.size(); ++i) kinds[i] = rawValueTable<CapabilityKind>[i].first;
    return kinds;
}();

/// The name that people read; that of `accessibility` is "Computer control".
std::string_view title(CapabilityKind kind);
/// One sentence for people: when the capability is used.
std::string_view shortSummary(CapabilityKind kind);
/// The address of the pane of the system's settings where the user decides; none where there is no such pane.
std::optional<std::string> systemSettingsURL(CapabilityKind kind);
/// Whether a program can ask for the capability at all.
bool supportsDirectRequest(CapabilityKind kind);
/// Whether asking from the user interface makes sense in `state`.
bool supportsDirectRequest(CapabilityKind kind, CapabilityAuthorizationState state);

struct CapabilityStatus {
    CapabilityKind kind{};
    CapabilityAuthorizationState state{};
    /// One sentence for the assistant.
    std::string detail;
    /// What the user should do, absent where there is nothing to do.
    std::optional<std::string> remediation;
    /// The capability whose grant decides this one too.
    std::optional<CapabilityKind> sharedAuthorizationWith;

    std::string_view id() const { return rawValue(kind); }
    bool operator==(const CapabilityStatus&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityStatus> =
    recordFields(required("kind", &CapabilityStatus::kind), required("state", &CapabilityStatus::state),
                 required("detail", &CapabilityStatus::detail), optional("remediation", &CapabilityStatus::remediation),
                 optional("sharedAuthorizationWith", &CapabilityStatus::sharedAuthorizationWith));

struct CapabilityStatusReport {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    std::vector<CapabilityStatus> capabilities;

    bool operator==(const CapabilityStatusReport&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityStatusReport> =
    recordFields(required("brokerPath", &CapabilityStatusReport::brokerPath),
                 optional("bundlePath", &CapabilityStatusReport::bundlePath),
                 required("capabilities", &CapabilityStatusReport::capabilities));

struct CapabilityRequestResponse {
    CapabilityKind requested{};
    CapabilityStatusReport report;

    bool operator==(const CapabilityRequestResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityRequestResponse> =
    recordFields(required("requested", &CapabilityRequestResponse::requested),
                 required("report", &CapabilityRequestResponse::report));

/// Reserved for live voice; nothing produces it yet.
struct CapabilityAudioTranscriptionResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    std::string text;
    std::string localeIdentifier;
    std::string detail;

    bool operator==(const CapabilityAudioTranscriptionResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityAudioTranscriptionResponse> =
    recordFields(required("brokerPath", &CapabilityAudioTranscriptionResponse::brokerPath),
                 optional("bundlePath", &CapabilityAudioTranscriptionResponse::bundlePath),
                 required("text", &CapabilityAudioTranscriptionResponse::text),
                 required("localeIdentifier", &CapabilityAudioTranscriptionResponse::localeIdentifier),
                 required("detail", &CapabilityAudioTranscriptionResponse::detail));

enum class CapabilityTodoView { open, done, all, today };

template <>
inline constexpr auto rawValueTable<CapabilityTodoView> =
    std::to_array<std::pair<CapabilityTodoView, std::string_view>>({
        {CapabilityTodoView::open, "open"},
        {CapabilityTodoView::done, "done"},
        {CapabilityTodoView::all, "all"},
        {CapabilityTodoView::today, "today"},
    });

enum class CapabilityMailView { unread, flagged, recent };

template <>
inline constexpr auto rawValueTable<CapabilityMailView> =
    std::to_array<std::pair<CapabilityMailView, std::string_view>>({
        {CapabilityMailView::unread, "unread"},
        {CapabilityMailView::flagged, "flagged"},
        {CapabilityMailView::recent, "recent"},
    });

enum class CapabilityMouseButton { left, right };

template <>
inline constexpr auto rawValueTable<CapabilityMouseButton> =
    std::to_array<std::pair<CapabilityMouseButton, std::string_view>>({
        {CapabilityMouseButton::left, "left"},
        {CapabilityMouseButton::right, "right"},
    });

enum class CapabilityKeyModifier { command, shift, option, control };

template <>
inline constexpr auto rawValueTable<CapabilityKeyModifier> =
    std::to_array<std::pair<CapabilityKeyModifier, std::string_view>>({
        {CapabilityKeyModifier::command, "command"},
        {CapabilityKeyModifier::shift, "shift"},
        {CapabilityKeyModifier::option, "option"},
        {CapabilityKeyModifier::control, "control"},
    });

enum class CapabilityPDFPaperSize { letter, a4 };

template <>
inline constexpr auto rawValueTable<CapabilityPDFPaperSize> =
    std::to_array<std::pair<CapabilityPDFPaperSize, std::string_view>>({
        {CapabilityPDFPaperSize::letter, "letter"},
        {CapabilityPDFPaperSize::a4, "a4"},
    });

} // namespace vesk
