#pragma once

#include "VeskPlatform/SettingsOpener.hpp"

namespace vesk {

/// The settings of this platform are the companion's consent page: `vesk consent page URL`, with the `vesk` that lies
/// beside the running executable.
class CompanionSettingsOpener : public SettingsOpener {
public:
    explicit CompanionSettingsOpener(const std::string& runningExecutable);
    bool launchOpener(const std::string& url) override;
    /// Through xdg-open, where it is installed.
    void openUrl(const std::string& url) override;

private:
    std::string companion_;
};

} // namespace vesk
