#pragma once

#include "VeskPlatform/Linux/Desktop/WindowSystem.hpp"

#include <functional>
#include <string>

// What the modules of the desktop offer to the rest of the platform: each has one function, which makes an object that
// the caller owns.

namespace vesk {

class AccessibilityTree;
class Environment;
class ScreenImages;

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
/// `veskAccessibility` in the module `atspi`. Throws ErrorRecord where the accessibility bus cannot be reached.
using AccessibilityFactory = AccessibilityTree*(const DesktopSurroundings& surroundings);
/// `veskScreenImages` in the module `images`.
using ScreenImagesFactory = ScreenImages*();

} // namespace vesk
