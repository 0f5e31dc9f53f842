#include "VeskPlatform/Linux/ConsentAutomation.hpp"

#include "VeskPlatform/Linux/SqliteConsent.hpp"
#include "VeskPlatform/Linux/UserFolders.hpp"

#include <filesystem>

namespace vesk {

namespace {

/// The consent database cannot be used.
constexpr AutomationResult unknown = -1;

AutomationResult resultOf(AuthorizationStatus status) {
    switch (status) {
    case 0: return automationUndecided;
    case 1:
    case 2: return automationRefused;
    case 3: return automationPermitted;
    default: return unknown;
    }
}

} // namespace

bool ConsentAutomation::isInstalled(const std::string& bundleIdentifier) {
    return reach(bundleIdentifier) != ApplicationReach::absent;
}

bool ConsentAutomation::isRunning(const std::string& bundleIdentifier) {
    return reach(bundleIdentifier) == ApplicationReach::ready;
}

void ConsentAutomation::launchAndWait(const ApplicationLaunch& launch) {
    const auto found = targets_.find(launch.bundleIdentifier);
    if (found != targets_.end() && found->second.start) found->second.start();
}

std::optional<AutomationResult> ConsentAutomation::permission(const std::string& bundleIdentifier) {
    switch (reach(bundleIdentifier)) {
    case ApplicationReach::absent: return std::nullopt;
    case ApplicationReach::unready: return automationTargetNotFound;
    case ApplicationReach::ready: break;
    }
    return resultOf(consent_.statusOf(targets_.at(bundleIdentifier).consentRow));
}

Task<std::optional<AutomationResult>> ConsentAutomation::requestPermission(std::string bundleIdentifier) {
    const std::optional<AutomationResult> before = permission(bundleIdentifier);
    if (before != automationUndecided) co_return before;
    const std::string row = targets_.at(bundleIdentifier).consentRow;
    co_await consent_.requestRow(row);
    co_return resultOf(consent_.statusOf(row));
}

ApplicationReach ConsentAutomation::reach(const std::string& bundleIdentifier) const {
    const auto found = targets_.find(bundleIdentifier);
    return found == targets_.end() ? ApplicationReach::absent : found->second.reach();
}

ApplicationReach reachOfMail(Environment& environment) {
    std::error_code error;
    const bool there = std::filesystem::is_directory(mailFolder(environment), error);
    return there ? ApplicationReach::ready : ApplicationReach::absent;
}

} // namespace vesk
