#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <chrono>
#include <string>

namespace vesk {

class Environment;

/// The bus of the accessible applications cannot be reached. Domain "VeskAccessibility", code 1; the description tells
/// why, and the Debian package that brings it.
class AccessibilityUnavailable : public ErrorRecord {
public:
    explicit AccessibilityUnavailable(const std::string& reason);
};

/// The address of the bus that AT_SPI_BUS_ADDRESS names, else of that of the session, which the session bus starts on
/// demand. Throws AccessibilityUnavailable.
std::string accessibilityBusAddress(Environment& environment, std::chrono::milliseconds patience);

} // namespace vesk
