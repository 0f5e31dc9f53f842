#include "VeskCapabilityBroker/CapabilityRequests.hpp"

#include "VeskPlatform/Consent.hpp"
#include "VeskPlatform/SettingsOpener.hpp"
#include "VeskShellCore/CapabilityStatuses.hpp"
#include "VeskShellCore/MailCapabilitySupport.hpp"
#include "VeskShellCore/MessagesCapabilitySupport.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>
#include <exception>
#include <string>

namespace vesk {
namespace {

constexpr AuthorizationStatus undetermined = 0;

enum GateFailure { noStatus = 74, notGranted = 75 };

ErrorRecord gateError(GateFailure code, std::string message) {
    return {"VeskCapabilityBroker", code, std::move(message)};
}

bool isUndetermined(Platform& platform, PrivacyService service) {
    return platform.consent().authorizationStatus(service) == undetermined;
}

Task<void> requestOnce(Platform& platform, PrivacyService service) {
    if (!isUndetermined(platform, service)) co_return;
    co_await platform.consent().requestAccess(service);
}

/// Sends the request of `kind`. The status that it returns, if any, is fresher than what the report would find.
Task<std::optional<CapabilityStatus>> sendRequest(Platform& platform, CapabilityKind kind) {
    switch (kind) {
    case CapabilityKind::screenRecording:
    case CapabilityKind::systemAudio: co_await platform.consent().requestScreenCapture(); break;
    case CapabilityKind::microphone: co_await requestOnce(platform, PrivacyService::microphone); break;
    case CapabilityKind::accessibility: co_await platform.consent().promptForProcessTrust(); break;
    case CapabilityKind::calendar:
        if (!isUndetermined(platform, PrivacyService::events)) break;
        co_await requestEventAccess(platform);
        break;
    case CapabilityKind::reminders:
        if (!isUndetermined(platform, PrivacyService::reminders)) break;
        co_await requestReminderAccess(platform);
        break;
    case CapabilityKind::contacts: co_await requestOnce(platform, PrivacyService::contacts); break;
    case CapabilityKind::messages:
        co_return co_await VeskMessagesCapabilitySupport::requestStatus(platform, platform.mainBundle());
    case CapabilityKind::mail:
        co_return co_await VeskMailCapabilitySupport::requestStatus(platform, platform.mainBundle());
    case CapabilityKind::fullDiskAccess:
    case CapabilityKind::iCloud: break;
    }
    co_return std::nullopt;
}

std::string refusal(const CapabilityStatus& status) {
    std::string message(title(status.kind));
    message += " access is not granted after Vesk requested it (state=";
    message += rawValue(status.state);
    message += "). " + status.detail;
    if (status.remediation) message += " " + *status.remediation;
    return message;
}

} // namespace

Task<CapabilityStatusReport> requestCapability(Platform& platform, CapabilityKind kind) {
    std::optional<CapabilityStatus> fresher;
    try {
        fresher = co_await sendRequest(platform, kind);
    } catch (const std::exception&) { // a request that could not be sent: the report shows the state
    }
    co_return co_await capabilityReport(platform, std::move(fresher));
}

Task<void> ensureCapabilityGranted(Platform& platform, CapabilityKind kind) {
    const CapabilityStatusReport report = co_await requestCapability(platform, kind);
    const auto status = std::find_if(report.capabilities.begin(), report.capabilities.end(),
                                     [kind](const CapabilityStatus& candidate) { return candidate.kind == kind; });
    if (status == report.capabilities.end())
        throw gateError(noStatus, std::string(title(kind)) + " access request did not return a capability status.");
    if (!isGranted(status->state)) throw gateError(notGranted, refusal(*status));
}

void openSystemSettings(Platform& platform, CapabilityKind kind) {
    const auto url = systemSettingsURL(kind);
    if (!url) return;
    SettingsOpener& opener = platform.settingsOpener();
    if (!opener.launchOpener(*url)) opener.openUrl(*url);
}

Task<bool> requestEventAccess(Platform& platform) {
    const AccessAnswer answer = co_await platform.consent().requestAccess(PrivacyService::events);
    co_return answer.granted;
}

Task<bool> requestReminderAccess(Platform& platform) {
    const AccessAnswer answer = co_await platform.consent().requestAccess(PrivacyService::reminders);
    co_return answer.granted;
}

} // namespace vesk
