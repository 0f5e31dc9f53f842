#pragma once

#include "VeskPlatform/Linux/Bus/BusMessage.hpp"
#include "VeskPlatform/Linux/Bus/ServicePresence.hpp"

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <systemd/sd-bus.h>

namespace vesk {

enum class BusKind { system, session };

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
    /// The bus at an address, as in DBUS_SESSION_BUS_ADDRESS.
    BusConnection(const std::string& address, std::chrono::milliseconds patience);

    /// Owned by this object.
    sd_bus* native() const { return bus_.get(); }

    ServicePresence presence(const std::string& service, std::chrono::milliseconds patience);
    /// Has the bus start a dormant service and waits for it.
    void start(const std::string& service, std::chrono::milliseconds patience);

    /// A call that is still to be sent, with arguments as sd_bus_message_append(3) takes them.
    template <class... Arguments>
    BusMessage newCall(const BusObject& object, const char* method, const char* types, Arguments... arguments) {
        BusMessage message = newCall(object, method);
        busRequired(sd_bus_message_append(message.get(), types, arguments...));
        return message;
    }
    /// The same where the caller appends them.
    BusMessage newCall(const BusObject& object, const char* method);

    /// Calls a method with such arguments.
    template <class... Arguments>
    BusMessage call(const BusObject& object, const char* method, std::chrono::milliseconds patience,
                    const char* types = "", Arguments... arguments) {
        const BusMessage message = newCall(object, method, types, arguments...);
        return answer(*message, patience);
    }
    BusMessage answer(sd_bus_message& call, std::chrono::milliseconds patience);

    /// All properties of the object's interface.
    BusProperties properties(const BusObject& object, std::chrono::milliseconds patience);

    /// Runs `cause` and waits for signals of the object's interface, until none has come for `first` (the first one)
    /// or `next` (any other).
    void awaitSignals(const BusObject& object, const std::function<void()>& cause, std::chrono::milliseconds first,
                      std::chrono::milliseconds next);

    /// Runs `cause`, which returns a path, and waits for the signal of that object, also where it came before the path
    /// was known. `object.path` counts for nothing. Null past the deadline, which begins behind `cause`.
    BusMessage awaitSignal(const BusObject& object, const char* member, const std::function<std::string()>& cause,
                           std::chrono::milliseconds patience);

private:
    struct Release {
        /// Without flushing, which would wait for a bus that never answers; every call has had its answer anyway.
        void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
    };

    void awaitReadiness(std::chrono::milliseconds patience);

    std::unique_ptr<sd_bus, Release> bus_;
};

} // namespace vesk
