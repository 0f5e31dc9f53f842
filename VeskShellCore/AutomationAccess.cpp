#include "VeskShellCore/AutomationAccess.hpp"

#include "VeskPlatform/Sleeper.hpp"

#include <chrono>

namespace vesk {
namespace {

constexpr std::chrono::milliseconds timeToComeUp{500};

Task<void> launchIfNeeded(Platform& platform, std::string bundleIdentifier) {
    ApplicationAutomation& automation = platform.applicationAutomation();
    if (automation.isRunning(bundleIdentifier)) co_return;
    const ApplicationLaunch launch{bundleIdentifier, {"/usr/bin/open", "-b", bundleIdentifier}};
    automation.launchAndWait(launch);
    co_await platform.sleeper().sleep(timeToComeUp);
}

} // namespace

AutomationResult automationPermission(Platform& platform, const std::string& bundleIdentifier) {
    return platform.applicationAutomation().permission(bundleIdentifier).value_or(automationTargetNotFound);
}

Task<AutomationResult> requestAutomation(Platform& platform, std::string bundleIdentifier) {
    ApplicationAutomation& automation = platform.applicationAutomation();
    std::optional<AutomationResult> result = co_await automation.requestPermission(bundleIdentifier);
    if (result.value_or(automationTargetNotFound) == automationTargetNotFound) {
        co_await launchIfNeeded(platform, bundleIdentifier);
        result = co_await automation.requestPermission(bundleIdentifier);
    }
    co_return result.value_or(automationTargetNotFound);
}

} // namespace vesk
