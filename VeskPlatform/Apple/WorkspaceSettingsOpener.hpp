#pragma once

#include "VeskPlatform/SettingsOpener.hpp"

namespace vesk {

/// Opens the panes of the system's settings by the program that opens URLs, or else by the workspace.
class WorkspaceSettingsOpener : public SettingsOpener {
public:
    bool launchOpener(const std::string& url) override;
    void openUrl(const std::string& url) override;
};

} // namespace vesk
