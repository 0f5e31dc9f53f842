#pragma once

#include "VeskSupport/Task.hpp"

#include <optional>
#include <string>
#include <vector>

namespace vesk {

/// The answer to "may this program send Apple events (class 'core', id 'getd') to that application?": 0 permitted,
/// -600 the application does not run or cannot be found, -1743 not permitted, -1744 the user has to be asked first. Any
/// other number is the platform's own failure.
using AutomationResult = int;
inline constexpr AutomationResult automationPermitted = 0, automationTargetNotFound = -600, automationRefused = -1743,
                                  automationUndecided = -1744;

/// How an application is started: by its identifier, or by the command that opens it where the platform has one.
struct ApplicationLaunch {
    std::string bundleIdentifier;
    std::vector<std::string> command;

    bool operator==(const ApplicationLaunch&) const = default;
};

/// Applications that can be scripted, by their bundle identifiers, and the user's consent to it. Called on the main
/// executor, one call at a time. Nothing here fails.
class ApplicationAutomation {
public:
    virtual ~ApplicationAutomation() = default;

    virtual bool isInstalled(const std::string& bundleIdentifier) = 0;
    virtual bool isRunning(const std::string& bundleIdentifier) = 0;
    /// Starts the application and waits until the starting program has ended. One that cannot be started stays down.
    virtual void launchAndWait(const ApplicationLaunch& launch) = 0;

    /// Never prompts. None where the platform cannot describe the application at all.
    virtual std::optional<AutomationResult> permission(const std::string& bundleIdentifier) = 0;
    /// The same, but asks the user who has not decided yet, for as long as the user takes.
    virtual Task<std::optional<AutomationResult>> requestPermission(std::string bundleIdentifier) = 0;
};

} // namespace vesk
