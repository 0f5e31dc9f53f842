#pragma once

#include "VeskPlatform/ApplicationAutomation.hpp"

#include <functional>
#include <map>
#include <string>

namespace vesk {

class Environment;
class SqliteConsent;

/// How far an application can be reached: not there at all, there but not ready to answer, or ready.
enum class ApplicationReach { absent, unready, ready };

/// What stands here for an application: its row in the consent database, and a look at whether it can be reached, which
/// neither waits nor fails.
struct AutomationTarget {
    std::string consentRow;
    std::function<ApplicationReach()> reach;
    /// Starts what is not ready and can be started; does not fail. Empty where there is nothing to start.
    std::function<void()> start = {};
};

/// Targets by the bundle identifiers of the applications whose part they play.
using AutomationTargets = std::map<std::string, AutomationTarget>;

/// Scripted applications under the user's consent. One without a target is not installed. Launching one starts what
/// its target says, never the command that opens the application elsewhere.
class ConsentAutomation : public ApplicationAutomation {
public:
    ConsentAutomation(SqliteConsent& consent, AutomationTargets targets)
        : consent_(consent), targets_(std::move(targets)) {}

    bool isInstalled(const std::string& bundleIdentifier) override;
    bool isRunning(const std::string& bundleIdentifier) override;
    void launchAndWait(const ApplicationLaunch& launch) override;
    std::optional<AutomationResult> permission(const std::string& bundleIdentifier) override;
    Task<std::optional<AutomationResult>> requestPermission(std::string bundleIdentifier) override;

private:
    ApplicationReach reach(const std::string& bundleIdentifier) const;

    SqliteConsent& consent_;
    AutomationTargets targets_;
};

/// Mail is there where its root is a folder, and then it is ready.
ApplicationReach reachOfMail(Environment& environment);

} // namespace vesk
