#pragma once

#include "VeskPlatform/Linux/Accessibility/AtspiFacts.hpp"
#include "VeskPlatform/Linux/Bus/BusMessage.hpp"

#include <map>
#include <set>
#include <string>
#include <vector>

// What AT-SPI's answers consist of. Each consumes what it returns, and throws a BusError where the answer has something
// else there.

namespace vesk {

/// `(so)`.
AtspiReference readReference(sd_bus_message& answer);
/// `a(so)`, without those to nothing.
std::vector<AtspiReference> readReferences(sd_bus_message& answer);
/// `au`: words of 32 states, the first ones first.
AtspiStates readStates(sd_bus_message& answer);
/// `(iiii)`: left, top, width and height.
AtspiExtents readExtents(sd_bus_message& answer);
/// `a{ss}`.
std::map<std::string, std::string> readAttributes(sd_bus_message& answer);
/// `as`.
std::set<std::string> readNames(sd_bus_message& answer);
/// `d`.
double readReal(sd_bus_message& answer);

} // namespace vesk
