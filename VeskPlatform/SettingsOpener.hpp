#pragma once

#include <string>

namespace vesk {

/// Shows a pane of the system's settings. Neither call waits for what it starts.
class SettingsOpener {
public:
    virtual ~SettingsOpener() = default;
    /// Starts the system's opener with the URL as its one argument; false where it cannot be started.
    virtual bool launchOpener(const std::string& url) = 0;
    /// Asks the desktop to open the URL; its answer does not matter.
    virtual void openUrl(const std::string& url) = 0;
};

} // namespace vesk
