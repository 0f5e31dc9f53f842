#pragma once

#include "VeskPlatform/ApplicationAutomation.hpp"

namespace vesk {

/// Applications that take Apple events. A request for permission blocks the main thread while the system asks the user.
class AppleEventAutomation : public ApplicationAutomation {
public:
    bool isInstalled(const std::string& bundleIdentifier) override;
    bool isRunning(const std::string& bundleIdentifier) override;
    void launchAndWait(const ApplicationLaunch& launch) override;
    std::optional<AutomationResult> permission(const std::string& bundleIdentifier) override;
    Task<std::optional<AutomationResult>> requestPermission(std::string bundleIdentifier) override;
};

} // namespace vesk
