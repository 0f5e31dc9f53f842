#include "VeskPlatform/Linux/Bus/AccessibilityAddress.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/Linux/Bus/SessionBus.hpp"

namespace vesk {

AccessibilityUnavailable::AccessibilityUnavailable(const std::string& reason)
    : ErrorRecord("VeskAccessibility", 1,
                  "The accessibility bus of this session cannot be reached (" + reason
                      + "). It comes with the Debian package at-spi2-core.") {}

std::string accessibilityBusAddress(Environment& environment, std::chrono::milliseconds patience) {
    if (const auto address = environment.value("AT_SPI_BUS_ADDRESS"); address && !address->empty()) return *address;
    try {
        BusConnection session = openSessionBus(patience);
        const BusMessage answer =
            session.call({"org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus"}, "GetAddress", patience);
        return readText(*answer);
    } catch (const BusError& error) {
        throw AccessibilityUnavailable(error.description());
    }
}

} // namespace vesk
