#pragma once

#include "VeskPlatform/Linux/Desktop/DesktopModules.hpp"
#include "VeskPlatform/Linux/Desktop/WindowSystem.hpp"
#include "VeskPlatform/Linux/Wayland/DesktopPortal.hpp"
#include "VeskPlatform/Linux/Wayland/OutputLayout.hpp"
#include "VeskPlatform/Linux/Wayland/PortalInputEvents.hpp"
#include "VeskPlatform/Linux/Wayland/WaylandApplications.hpp"
#include "VeskPlatform/Linux/Wayland/WaylandConnection.hpp"
#include "VeskPlatform/Linux/Wayland/WaylandDisplays.hpp"

namespace vesk {

/// A Wayland session: its compositor, its portals and its accessibility bus, each asked when it is first needed.
class WaylandWindowSystem : public WindowSystem {
public:
    /// Throws WaylandError where the compositor cannot be reached.
    explicit WaylandWindowSystem(const DesktopSurroundings& surroundings);

    Displays& displays() override { return displays_; }
    InputEvents& inputEvents() override { return inputEvents_; }
    RunningApplications& runningApplications() override { return applications_; }

private:
    WaylandConnection connection_;
    OutputLayout layout_;
    DesktopPortal portal_;
    WaylandDisplays displays_;
    PortalInputEvents inputEvents_;
    WaylandApplications applications_;
};

} // namespace vesk
