#include "VeskShellCore/CapabilityModels.hpp"

#include <algorithm>

namespace vesk {
namespace {

enum class DirectRequest { never, onceWhileNotDetermined, untilGranted };

struct KindTraits {
    CapabilityKind kind;
    std::string_view title;
    std::string_view shortSummary;
    /// Empty where there is no pane.
    std::string_view settingsPane;
    DirectRequest request;
};

using enum DirectRequest;

constexpr auto kindTraits = std::to_array<KindTraits>({
    {CapabilityKind::fullDiskAccess, "Full disk access",
     "Used only when a file request needs protected locations across this Mac.", "Privacy_AllFiles", never},
    {CapabilityKind::screenRecording, "Screen recording",
     "Used only when you ask Vesk to see what is on this Mac's screen.", "Privacy_ScreenCapture", untilGranted},
    {CapabilityKind::systemAudio, "System audio", "Reserved for a future system-audio feature.",
     "Privacy_ScreenCapture", untilGranted},
    {CapabilityKind::microphone, "Microphone", "Reserved for a future live-voice feature.", "Privacy_Microphone",
     onceWhileNotDetermined},
    {CapabilityKind::accessibility, "Computer control",
     "Used only when you ask Vesk to click, type, or control a Mac app.", "Privacy_Accessibility", untilGranted},
    {CapabilityKind::calendar, "Calendar", "Used when you ask Vesk to read or update Apple Calendar.",
     "Privacy_Calendars", onceWhileNotDetermined},
    {CapabilityKind::reminders, "Reminders", "Used when you ask Vesk to read or update Reminders.", "Privacy_Reminders",
     onceWhileNotDetermined},
    {CapabilityKind::contacts, "Contacts", "Used when you ask Vesk to look up or save someone in Contacts.",
     "Privacy_Contacts", onceWhileNotDetermined},
    {CapabilityKind::messages, "Messages", "Used when you ask Vesk to read from or send through Messages.",
     "Privacy_Automation", onceWhileNotDetermined},
    {CapabilityKind::mail, "Mail", "Used when you ask Vesk to read or summarize messages from Mail.",
     "Privacy_Automation", onceWhileNotDetermined},
    {CapabilityKind::iCloud, "iCloud", "Used for Vesk-owned iCloud files when iCloud is available.", "", never},
});

static_assert(std::equal(kindTraits.begin(), kindTraits.end(), allCapabilityKinds.begin(), allCapabilityKinds.end(),
                         [](const KindTraits& traits, CapabilityKind kind) { return traits.kind == kind; }));

const KindTraits& traitsOf(CapabilityKind kind) { return kindTraits[static_cast<std::size_t>(kind)]; }

} // namespace

std::string_view title(CapabilityKind kind) { return traitsOf(kind).title; }

std::string_view shortSummary(CapabilityKind kind) { return traitsOf(kind).shortSummary; }

std::optional<std::string> systemSettingsURL(CapabilityKind kind) {
    const std::string_view pane = traitsOf(kind).settingsPane;
    if (pane.empty()) return std::nullopt;
    return "x-apple.systempreferences:com.apple.preference.security?" + std::string(pane);
}

bool supportsDirectRequest(CapabilityKind kind) { return traitsOf(kind).request != never; }

bool supportsDirectRequest(CapabilityKind kind, CapabilityAuthorizationState state) {
    switch (traitsOf(kind).request) {
    case never: return false;
    case onceWhileNotDetermined: return state == CapabilityAuthorizationState::notDetermined;
    case untilGranted: return !isGranted(state);
    }
    return false;
}

} // namespace vesk
