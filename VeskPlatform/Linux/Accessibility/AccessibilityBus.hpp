#pragma once

#include "VeskPlatform/AccessibilityTree.hpp"
#include "VeskPlatform/Linux/Desktop/DesktopModules.hpp"

#include <memory>

namespace vesk {

/// The elements on the accessibility bus. Throws AccessibilityUnavailable.
std::unique_ptr<AccessibilityTree> openAccessibilityTree(const DesktopSurroundings& surroundings);

} // namespace vesk
