#include "VeskPlatform/Linux/X11/X11WindowSystem.hpp"

/// A WindowSystemFactory.
extern "C" __attribute__((visibility("default"))) vesk::WindowSystem*
veskWindowSystem(const vesk::DesktopSurroundings& surroundings) {
    return new vesk::X11WindowSystem(surroundings);
}
