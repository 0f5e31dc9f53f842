#pragma once

#include "VeskPlatform/Linux/Desktop/WindowSystem.hpp"

#include <functional>
#include <string>

// What the modules of the desktop offer to the rest of the platform: each has a function that makes an object which the
// caller owns.

namespace vesk {

class AccessibilityTree;
class Environment;
class ScreenImages;

/// The Debian packages that a module stands on; a desktop usually has most of them.
constexpr const char* x11Packages =
    "libxkbcommon-x11-0 libxcb-randr0 libxcb-res0 libxcb-shm0 libxcb-xinput0 libxcb-xtest0";
constexpr const char* waylandPackages = "libwayland-client0 libxkbcommon0 libpng16-16";

/// What the modules are told. The environment outlives what they make.
struct DesktopSurroundings {
    Environment& environment;
    /// Where small durable state lies, such as what a portal remembers of the user's choice.
    std::string stateFolder;
    /// One line for the diagnostic log.
    std::function<void(const std::string& message)> log;
};

/// `veskWindowSystem` in the modules `x11` and `wayland`. Throws ErrorRecord where the display cannot be reached.
using WindowSystemFactory = WindowSystem*(const DesktopSurroundings& surroundings);
/// `veskRequirePortal` in the module `wayland`. Throws ErrorRecord where the session has no such portal; `portal` is as
/// in "Screenshot".
using PortalCheck = void(const std::string& portal);
/// `veskAccessibility` in the module `atspi`. Throws ErrorRecord where the accessibility bus cannot be reached.
using AccessibilityFactory = AccessibilityTree*(const DesktopSurroundings& surroundings);
/// `veskScreenImages` in the module `images`.
using ScreenImagesFactory = ScreenImages*();

} // namespace vesk
