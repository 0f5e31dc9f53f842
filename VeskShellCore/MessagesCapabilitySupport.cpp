#include "VeskShellCore/MessagesCapabilitySupport.hpp"

#include "VeskShellCore/AutomationAccess.hpp"
#include "VeskShellCore/SignedEntitlements.hpp"

namespace vesk::VeskMessagesCapabilitySupport {
namespace {

using enum CapabilityAuthorizationState;

constexpr const char* bundleIdentifier = "com.apple.MobileSMS";
constexpr const char* openAndTryAgain = "Open Messages and Vesk, then try the request again.";

CapabilityStatus made(CapabilityAuthorizationState state, std::string detail,
                      std::optional<std::string> remediation = std::nullopt) {
    return {.kind = CapabilityKind::messages,
            .state = state,
            .detail = std::move(detail),
            .remediation = std::move(remediation),
            .sharedAuthorizationWith = {}};
}

CapabilityStatus notInstalled() { return made(unavailable, "Messages is not installed on this Mac."); }

std::string entitlementHint(Platform& platform, const Bundle& bundle) {
    return hasAutomationEntitlement(platform, bundle) ? std::string()
                                                      : " The packaged app must be signed for app automation.";
}

CapabilityStatus statusForAutomationPermission(AutomationResult result, const std::string& hint) {
    switch (result) {
    case automationPermitted: return made(granted, "Vesk can use Messages when you ask.");
    case automationUndecided:
        return made(notDetermined, "Messages access has not been requested yet." + hint,
                    "Ask Vesk to use Messages once to request access.");
    case automationRefused:
        return made(denied, "Messages access is not granted for Vesk." + hint,
                    "Enable Vesk under System Settings > Privacy & Security > Automation > Messages.");
    case automationTargetNotFound: return made(unavailable, "Messages could not be reached." + hint, openAndTryAgain);
    default: return made(unavailable, "Messages access could not be checked." + hint, openAndTryAgain);
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
    co_return statusForAutomationPermission(result, entitlementHint(platform, bundle));
}

} // namespace vesk::VeskMessagesCapabilitySupport
