#include "VeskPlatform/Linux/Accessibility/AccessibilityBus.hpp"

/// An AccessibilityFactory.
extern "C" __attribute__((visibility("default"))) vesk::AccessibilityTree*
veskAccessibility(const vesk::DesktopSurroundings& surroundings) {
    return vesk::openAccessibilityTree(surroundings).release();
}
