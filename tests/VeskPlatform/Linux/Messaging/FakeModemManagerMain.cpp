#include "tests/fakes/FakeModemManager.hpp"

#include <cstdlib>

/// A daemon with one modem and one chat, for the bus to start. Ends with the bus.
int main() {
    vesk::test::FakeModemManager service;
    service.modems = {{.messages = {{.number = "+4930123", .text = {}, .timestamp = "2026-11-01T10:00:00+01:00"}}}};
    service.serveAt(std::getenv("DBUS_STARTER_ADDRESS"));
    service.serveUntilTheBusEnds();
}
