#pragma once

#include "VeskPlatform/Linux/Bus/BusConnection.hpp"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

class Environment;

/// A program that shows its windows on the accessibility bus, under the name that it gives itself there.
struct AccessibleApplication {
    std::int32_t processIdentifier = 0;
    std::string name;

    bool operator==(const AccessibleApplication&) const = default;
};

/// The programs on the accessibility bus (AT-SPI 2), the one place where a Wayland session tells of them. One that does
/// not answer in time is left out. The bus is connected on first use; functions throw AccessibilityUnavailable
/// and BusError.
class AccessibleApplications {
public:
    AccessibleApplications(Environment& environment, std::chrono::milliseconds patience);

    /// In the order in which they joined the bus.
    std::vector<AccessibleApplication> list();
    /// The one that has the active window.
    std::optional<AccessibleApplication> active();

private:
    using Visit = std::function<bool(const BusObject& root)>;

    BusConnection& bus();
    /// Runs `visit` for the root of each application until it returns true.
    void forEach(const Visit& visit);
    std::vector<BusObject> children(const BusObject& accessible);
    bool isActive(const BusObject& window);
    AccessibleApplication describe(const BusObject& root);

    Environment& environment_;
    std::chrono::milliseconds patience_;
    std::optional<BusConnection> bus_;
};

} // namespace vesk
