#include "VeskPlatform/Linux/Wayland/WaylandWindowSystem.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/Linux/Wayland/PortalScreenshot.hpp"

#include <chrono>

namespace vesk {
namespace {

/// A compositor on the same machine answers within a millisecond, unless it hangs.
constexpr std::chrono::milliseconds compositorPatience{5'000};

} // namespace

WaylandWindowSystem::WaylandWindowSystem(const DesktopSurroundings& surroundings)
    : connection_(surroundings.environment.value("WAYLAND_DISPLAY").value_or("wayland-0"), compositorPatience),
      layout_(connection_), displays_([this] { return layout_.outputs(); }, [this] { return takeScreenshot(portal_); }),
      inputEvents_(portal_, RestoreToken(surroundings.stateFolder)), applications_(surroundings.environment) {}

} // namespace vesk
