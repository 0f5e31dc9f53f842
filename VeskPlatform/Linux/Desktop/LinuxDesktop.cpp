#include "VeskPlatform/Linux/Desktop/LinuxDesktop.hpp"

#include "VeskPlatform/AccessibilityTree.hpp"
#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/Linux/AdapterModule.hpp"
#include "VeskPlatform/ScreenImages.hpp"

#include <utility>

namespace vesk {

LinuxDesktop::LinuxDesktop(std::string moduleFolder, DesktopSurroundings surroundings)
    : moduleFolder_(std::move(moduleFolder)), surroundings_(std::move(surroundings)) {}
LinuxDesktop::~LinuxDesktop() = default;

Displays& LinuxDesktop::displays() { return windowSystem().displays(); }
InputEvents& LinuxDesktop::inputEvents() { return windowSystem().inputEvents(); }
RunningApplications& LinuxDesktop::runningApplications() { return windowSystem().runningApplications(); }

WindowSystem& LinuxDesktop::windowSystem() {
    if (!windowSystem_) {
        const bool isWayland = !surroundings_.environment.value("WAYLAND_DISPLAY").value_or("").empty();
        const AdapterModule module = isWayland ? AdapterModule(moduleFolder_, "wayland", waylandPackages)
                                               : AdapterModule(moduleFolder_, "x11", x11Packages);
        windowSystem_.reset(module.function<WindowSystemFactory>("veskWindowSystem")(surroundings_));
    }
    return *windowSystem_;
}

AccessibilityTree& LinuxDesktop::accessibilityTree() {
    if (!accessibilityTree_) {
        const AdapterModule module(moduleFolder_, "atspi", "libsystemd0");
        accessibilityTree_.reset(module.function<AccessibilityFactory>("veskAccessibility")(surroundings_));
    }
    return *accessibilityTree_;
}

ScreenImages& LinuxDesktop::screenImages() {
    if (!screenImages_) {
        const AdapterModule module(moduleFolder_, "images", "libpixman-1-0");
        screenImages_.reset(module.function<ScreenImagesFactory>("veskScreenImages")());
    }
    return *screenImages_;
}

} // namespace vesk
