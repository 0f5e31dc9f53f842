#pragma once

#include "VeskPlatform/Linux/Messaging/Messaging.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <systemd/sd-bus.h>
#include <variant>

namespace vesk {

enum class BusKind { system, session };

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

/// The simple values that the services give as properties; all integers are one, everything else is none of these.
using BusValue = std::variant<std::monostate, std::string, std::int64_t, bool>;
using BusProperties = std::map<std::string, BusValue>;

struct BusObject {
    std::string service, path, interface;

    BusObject with(const std::string& otherPath, const std::string& otherInterface) const {
        return {service, otherPath, otherInterface};
    }
};

/// One bus of this user's. Nothing waits past its deadline. All failures are BusErrors.
class BusConnection {
public:
    BusConnection(BusKind kind, std::chrono::milliseconds patience);

    ServicePresence presence(const std::string& service, std::chrono::milliseconds patience);
    /// Has the bus start a dormant service and waits for it.
    void start(const std::string& service, std::chrono::milliseconds patience);

    /// Calls a method with arguments as sd_bus_message_append(3) takes them.
    template <class... Arguments>
    BusMessage call(const BusObject& object, const char* method, std::chrono::milliseconds patience,
                    const char* types = "", Arguments... arguments) {
        const BusMessage message = newCall(object, method);
        required(sd_bus_message_append(message.get(), types, arguments...));
        return answer(*message, patience);
    }
    /// All properties of the object's interface.
    BusProperties properties(const BusObject& object, std::chrono::milliseconds patience);

    /// Counts the signals of an object's interface while `cause` runs and afterwards, until none has come for
    /// `first` (before the first one) or `next`.
    void awaitSignals(const BusObject& object, const std::function<void()>& cause, std::chrono::milliseconds first,
                      std::chrono::milliseconds next);

    /// Turns a negative result of sd-bus into a BusError.
    static int required(int result);

private:
    struct Release {
        void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
    };

    BusMessage newCall(const BusObject& object, const char* method);
    BusMessage answer(sd_bus_message& message, std::chrono::milliseconds patience);
    void awaitReadiness(std::chrono::milliseconds patience);

    std::unique_ptr<sd_bus, Release> bus_;
};

// Reading. Each consumes what it returns, and throws a BusError where the message has something else there.

std::string readText(sd_bus_message& message, char type = 's');
std::int64_t readInteger(sd_bus_message& message, char type);
/// `a{sv}`.
BusProperties readProperties(sd_bus_message& message);
/// Enters a container, runs `readItem` until it is used up, and leaves it. `type` and `contents` are as in
/// sd_bus_message_enter_container(3).
void readItems(sd_bus_message& message, char type, const char* contents, const std::function<void()>& readItem);

/// Values of properties; empty, or `otherwise`, where they are missing or of another kind.
std::string textOf(const BusProperties& properties, const std::string& name);
std::int64_t integerOf(const BusProperties& properties, const std::string& name, std::int64_t otherwise);

} // namespace vesk
