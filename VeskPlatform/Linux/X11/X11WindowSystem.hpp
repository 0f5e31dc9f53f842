#pragma once

#include "VeskPlatform/Linux/Desktop/DesktopModules.hpp"
#include "VeskPlatform/Linux/X11/X11Displays.hpp"
#include "VeskPlatform/Linux/X11/X11InputEvents.hpp"
#include "VeskPlatform/Linux/X11/X11RunningApplications.hpp"

#include <optional>
#include <string>

namespace vesk {

/// The session on the X server that DISPLAY names. Throws X11Error where it cannot be reached.
class X11WindowSystem : public WindowSystem {
public:
    explicit X11WindowSystem(const DesktopSurroundings& surroundings);

    Displays& displays() override { return displays_; }
    InputEvents& inputEvents() override;
    RunningApplications& runningApplications() override;

private:
    Environment& environment_;
    std::string display_;
    X11Connection connection_;
    X11Displays displays_;
    std::optional<X11InputEvents> inputEvents_;
    std::optional<X11RunningApplications> runningApplications_;
};

} // namespace vesk
