#pragma once

#include "VeskPlatform/Linux/Bus/BusConnection.hpp"

#include <chrono>

namespace vesk {

/// A connection to the bus of the user's session. Throws a BusError that says so where there is none.
BusConnection openSessionBus(std::chrono::milliseconds patience);

} // namespace vesk
