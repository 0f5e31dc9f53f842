#include "VeskPlatform/Linux/Accessibility/AccessibilityBus.hpp"

#include "VeskPlatform/Linux/Accessibility/AtspiTree.hpp"
#include "VeskPlatform/Linux/Bus/AccessibilityAddress.hpp"

namespace vesk {

std::unique_ptr<AccessibilityTree> openAccessibilityTree(const DesktopSurroundings& surroundings) {
    const AtspiPatience patience;
    try {
        const std::string address = accessibilityBusAddress(surroundings.environment, patience.bus);
        return std::make_unique<AtspiTree>(address, surroundings.log, patience);
    } catch (const BusError& error) {
        throw AccessibilityUnavailable(error.description());
    }
}

} // namespace vesk
