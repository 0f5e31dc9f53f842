#include "VeskPlatform/Linux/Bus/SessionBus.hpp"

namespace vesk {

BusConnection openSessionBus(std::chrono::milliseconds patience) {
    try {
        return {BusKind::session, patience};
    } catch (const BusError& error) {
        throw BusError(error.domain(), static_cast<int>(error.code()),
                       "The session bus cannot be reached. Run within a desktop session (DBUS_SESSION_BUS_ADDRESS). "
                           + error.description());
    }
}

} // namespace vesk
