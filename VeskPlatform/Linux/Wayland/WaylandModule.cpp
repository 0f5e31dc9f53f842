#include "VeskPlatform/Linux/Wayland/DesktopPortal.hpp"
#include "VeskPlatform/Linux/Wayland/WaylandWindowSystem.hpp"

/// A WindowSystemFactory.
extern "C" __attribute__((visibility("default"))) vesk::WindowSystem*
veskWindowSystem(const vesk::DesktopSurroundings& surroundings) {
    return new vesk::WaylandWindowSystem(surroundings);
}

/// A PortalCheck.
extern "C" __attribute__((visibility("default"))) void veskRequirePortal(const std::string& portal) {
    vesk::DesktopPortal({.answer = std::chrono::seconds(2)}).require(portal);
}
