#include "VeskShellCore/MailCapabilitySupport.hpp"

#include "VeskShellCore/AutomationAccess.hpp"
#include "VeskShellCore/MailOperations.hpp"
#include "VeskShellCore/SignedEntitlements.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <array>
#include <string_view>

namespace vesk::VeskMailCapabilitySupport {
namespace {

using enum CapabilityAuthorizationState;

constexpr const char* bundleIdentifier = "com.apple.mail";

constexpr const char* enableInSettings = "Enable Vesk under System Settings > Privacy & Security > Automation > Mail.";
constexpr const char* openAndTryAgain = "Open Mail and Vesk, then try the Mail request again.";

CapabilityStatus made(CapabilityAuthorizationState state, std::string detail,
                      std::optional<std::string> remediation = std::nullopt) {
    return {.kind = CapabilityKind::mail,
            .state = state,
            .detail = std::move(detail),
            .remediation = std::move(remediation),
            .sharedAuthorizationWith = {}};
}

CapabilityStatus notInstalled() { return made(unavailable, "Mail.app is not installed on this Mac."); }

std::string entitlementHint(Platform& platform, const Bundle& bundle) {
    return hasAutomationEntitlement(platform, bundle)
               ? std::string()
               : " The packaged app must be signed with the Mail Automation entitlement.";
}

CapabilityStatus statusForAutomationPermission(AutomationResult result, const std::string& hint) {
    switch (result) {
    case automationPermitted: return made(granted, "Vesk.app can read bounded message lists from Mail when you ask.");
    case automationUndecided:
        return made(notDetermined, "Mail Automation access is verified only when you ask Vesk to check Mail." + hint,
                    "Ask Vesk to check Mail once to request or verify Mail access.");
    case automationRefused:
        return made(denied, "Mail Automation access is not granted for Vesk.app." + hint, enableInSettings);
    case automationTargetNotFound:
        return made(unavailable, "Mail Automation target could not be resolved." + hint, openAndTryAgain);
    default:
        return made(unavailable,
                    "Mail Automation permission check failed with OSStatus " + std::to_string(result) + "." + hint,
                    openAndTryAgain);
    }
}

template <std::size_t count>
bool containsAny(const std::string& text, const std::array<std::string_view, count>& pieces) {
    return std::ranges::any_of(pieces, [&](std::string_view piece) { return text.find(piece) != std::string::npos; });
}

/// The mail program's words are all that there is to tell an impatient script from a refused one.
CapabilityStatus statusForProbeError(const std::string& description, const std::string& hint) {
    static constexpr std::array<std::string_view, 2> late{"timed out", "timeout"};
    static constexpr std::array<std::string_view, 5> refused{"not authorized", "not authorised", "not permitted",
                                                             "not allowed", "not been granted"};
    const std::string text(trimmed(description));
    const std::string lower = lowercased(text);
    if (containsAny(lower, late))
        return made(
            notDetermined, "Mail Automation permission request did not finish yet." + hint,
            "Keep Vesk.app open and respond to the macOS Automation prompt; then ask Vesk to check Mail again.");
    if (containsAny(lower, refused))
        return made(denied, "Mail Automation access is not granted for Vesk.app." + hint + " " + text,
                    enableInSettings);
    return made(unavailable, "Mail Automation probe failed." + hint + " " + text, openAndTryAgain);
}

/// The probe's failure, none where it worked.
std::optional<std::string> probeFailure(Platform& platform) {
    try {
        VeskMailOperations::probeAccess(platform);
        return std::nullopt;
    } catch (const ErrorRecord& error) {
        return error.description();
    }
}

} // namespace

bool hasAutomationEntitlement(Platform& platform, const Bundle& bundle) {
    return VeskSignedEntitlements::hasBoolean(platform, automationEntitlementKey, bundle);
}

CapabilityStatus status(Platform& platform, const Bundle& bundle) {
    if (!platform.applicationAutomation().isInstalled(bundleIdentifier)) return notInstalled();
    const AutomationResult result = automationPermission(platform, bundleIdentifier);
    return statusForAutomationPermission(result, entitlementHint(platform, bundle));
}

Task<CapabilityStatus> requestStatus(Platform& platform, const Bundle& bundle) {
    if (!platform.applicationAutomation().isInstalled(bundleIdentifier)) co_return notInstalled();
    const AutomationResult result = co_await requestAutomation(platform, bundleIdentifier);
    if (result != automationPermitted)
        co_return statusForAutomationPermission(result, entitlementHint(platform, bundle));
    if (const auto failure = probeFailure(platform))
        co_return statusForProbeError(*failure, entitlementHint(platform, bundle));
    co_return statusForAutomationPermission(result, {});
}

} // namespace vesk::VeskMailCapabilitySupport
