#pragma once

#include "VeskPlatform/Apple/AXAccessibilityTree.hpp"
#include "VeskPlatform/Apple/QuartzDisplays.hpp"
#include "VeskPlatform/Apple/QuartzInputEvents.hpp"
#include "VeskPlatform/Apple/QuartzScreenImages.hpp"
#include "VeskPlatform/Apple/WorkspaceRunningApplications.hpp"
#include "VeskPlatform/Desktop.hpp"

namespace vesk {

/// The desktop of the user's login session. Its adapters reach for nothing before they are used.
class AppleDesktop : public Desktop {
public:
    AccessibilityTree& accessibilityTree() override { return accessibilityTree_; }
    Displays& displays() override { return displays_; }
    InputEvents& inputEvents() override { return inputEvents_; }
    RunningApplications& runningApplications() override { return runningApplications_; }
    ScreenImages& screenImages() override { return screenImages_; }

private:
    AXAccessibilityTree accessibilityTree_;
    QuartzDisplays displays_;
    QuartzInputEvents inputEvents_;
    WorkspaceRunningApplications runningApplications_;
    QuartzScreenImages screenImages_;
};

} // namespace vesk
