#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <systemd/sd-bus.h>
#include <variant>

namespace vesk {

/// A request that failed on a bus. The domain is the D-Bus name of the error, the code an errno, the description the
/// service's own message where it gave one.
class BusError : public ErrorRecord {
public:
    BusError(std::string name, int errnoValue, std::string message)
        : ErrorRecord(std::move(name), errnoValue, std::move(message)) {}

    /// Whether the object was not there: gone, or never made.
    bool isAbsence() const;
    /// Whether nobody knows what has become of the request.
    bool isTimeout() const;
};

struct BusMessageRelease {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using BusMessage = std::unique_ptr<sd_bus_message, BusMessageRelease>;

/// The simple values that services give as properties; all integers are one, everything else is none of these.
using BusValue = std::variant<std::monostate, std::string, std::int64_t, bool>;
using BusProperties = std::map<std::string, BusValue>;

/// The result of a function of sd-bus; a negative one is thrown as a BusError.
int busRequired(int result);

// Reading. Each consumes what it returns, and throws a BusError where the message has something else there.

std::string readText(sd_bus_message& message, char type = 's');
std::int64_t readInteger(sd_bus_message& message, char type);
/// `v`.
BusValue readVariant(sd_bus_message& message);
/// `a{sv}`.
BusProperties readProperties(sd_bus_message& message);
/// Enters a container, runs `readItem` until it is used up, and leaves it. `type` and `contents` are as in
/// sd_bus_message_enter_container(3).
void readItems(sd_bus_message& message, char type, const char* contents, const std::function<void()>& readItem);

/// Values of properties; empty, or `otherwise`, where they are missing or of another kind.
std::string textOf(const BusProperties& properties, const std::string& name);
std::int64_t integerOf(const BusProperties& properties, const std::string& name, std::int64_t otherwise);

} // namespace vesk
