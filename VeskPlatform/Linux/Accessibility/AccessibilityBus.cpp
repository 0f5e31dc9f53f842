#include "VeskPlatform/Linux/Accessibility/AccessibilityBus.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/Linux/Accessibility/AtspiTree.hpp"

namespace vesk {

namespace {

std::string addressFromSession(std::chrono::milliseconds patience) {
    BusConnection session(BusKind::session, patience);
    const BusMessage answer = session.call({"org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus"}, "GetAddress", patience);
    return readText(*answer);
}

} // namespace

AccessibilityUnavailable::AccessibilityUnavailable(const std::string& reason)
    : ErrorRecord("VeskAccessibility", 1,
                  "The accessibility bus of this session cannot be reached (" + reason
                      + "). It comes with the Debian package at-spi2-core.") {}

std::unique_ptr<AccessibilityTree> openAccessibilityTree(const DesktopSurroundings& surroundings) {
    const AtspiPatience patience;
    try {
        std::string address = surroundings.environment.value("AT_SPI_BUS_ADDRESS").value_or("");
        if (address.empty()) address = addressFromSession(patience.bus);
        return std::make_unique<AtspiTree>(address, surroundings.log, patience);
    } catch (const BusError& error) {
        throw AccessibilityUnavailable(error.description());
    }
}

} // namespace vesk
