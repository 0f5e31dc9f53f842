#pragma once

#include "VeskPlatform/Desktop.hpp"
#include "VeskPlatform/Linux/Desktop/DesktopModules.hpp"

#include <memory>
#include <string>

namespace vesk {

/// The desktop of the session that the environment names: Wayland where there is one, else X11. Each part is a module
/// that is loaded when it is first asked for; throws AdapterModuleMissing where that cannot be.
class LinuxDesktop : public Desktop {
public:
    /// `moduleFolder` is as in AdapterModule.
    LinuxDesktop(std::string moduleFolder, DesktopSurroundings surroundings);
    ~LinuxDesktop() override;

    AccessibilityTree& accessibilityTree() override;
    Displays& displays() override;
    InputEvents& inputEvents() override;
    RunningApplications& runningApplications() override;
    ScreenImages& screenImages() override;

private:
    WindowSystem& windowSystem();

    std::string moduleFolder_;
    DesktopSurroundings surroundings_;
    std::unique_ptr<WindowSystem> windowSystem_;
    std::unique_ptr<AccessibilityTree> accessibilityTree_;
    std::unique_ptr<ScreenImages> screenImages_;
};

} // namespace vesk
