#pragma once

#include "VeskPlatform/AccessibilityTree.hpp"
#include "VeskPlatform/Linux/Desktop/DesktopModules.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <memory>
#include <string>

namespace vesk {

/// The bus of the accessible applications cannot be reached. Domain "VeskAccessibility", code 1; the description tells
/// why, and the Debian package that brings it.
class AccessibilityUnavailable : public ErrorRecord {
public:
    explicit AccessibilityUnavailable(const std::string& reason);
};

/// The elements on the accessibility bus that AT_SPI_BUS_ADDRESS names, else on that of the session, which the session
/// bus starts on demand. Throws AccessibilityUnavailable.
std::unique_ptr<AccessibilityTree> openAccessibilityTree(const DesktopSurroundings& surroundings);

} // namespace vesk
