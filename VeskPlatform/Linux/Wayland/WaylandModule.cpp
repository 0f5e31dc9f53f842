#include "VeskPlatform/Linux/Wayland/WaylandWindowSystem.hpp"

/// A WindowSystemFactory.
extern "C" __attribute__((visibility("default"))) vesk::WindowSystem*
veskWindowSystem(const vesk::DesktopSurroundings& surroundings) {
    return new vesk::WaylandWindowSystem(surroundings);
}
