#pragma once

#include "VeskPlatform/Linux/Bus/BusConnection.hpp"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

class Environment;

/// A program that shows its windows on the accessibility bus, under the name that it gives itself there; empty where it
/// does not answer.
struct AccessibleApplication {
    std::int32_t processIdentifier = 0;
    std::string name;

    bool operator==(const AccessibleApplication&) const = default;
};

/// The programs on the accessibility bus (AT-SPI 2), the one place where a Wayland session tells of them. They are all
/// asked at the same time, and none for longer than the patience. The bus is connected on first use; functions throw
/// AccessibilityUnavailable and, where the list itself cannot be had, BusError.
class AccessibleApplications {
public:
    AccessibleApplications(Environment& environment, std::chrono::milliseconds patience);

    /// In the order in which they joined the bus.
    std::vector<AccessibleApplication> list();
    /// The one that has the active window.
    std::optional<AccessibleApplication> active();

private:
    struct Candidate;

    BusConnection& bus();
    std::vector<Candidate> candidates();

    Environment& environment_;
    std::chrono::milliseconds patience_;
    std::optional<BusConnection> bus_;
};

} // namespace vesk
