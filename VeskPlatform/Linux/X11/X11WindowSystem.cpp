#include "VeskPlatform/Linux/X11/X11WindowSystem.hpp"

#include "VeskPlatform/Environment.hpp"

namespace vesk {

X11WindowSystem::X11WindowSystem(const DesktopSurroundings& surroundings)
    : environment_(surroundings.environment), display_(environment_.value("DISPLAY").value_or("")),
      connection_(display_), displays_(connection_) {}

InputEvents& X11WindowSystem::inputEvents() {
    if (!inputEvents_) inputEvents_.emplace(connection_, display_);
    return *inputEvents_;
}

RunningApplications& X11WindowSystem::runningApplications() {
    if (!runningApplications_) runningApplications_.emplace(connection_, environment_);
    return *runningApplications_;
}

} // namespace vesk
