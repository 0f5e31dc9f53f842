#pragma once

#include "VeskPlatform/Linux/Bus/BusConnection.hpp"

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <systemd/sd-bus.h>

namespace vesk {

/// Many calls over one connection, on their way at the same time: what a service answers one after the other costs one
/// round trip and not one for each call. A call that fails, and an answer that holds something else than was expected,
/// are nobody's failure: there simply is no answer.
class BusCalls {
public:
    /// Reads an answer. It may add calls, and throw BusErrors.
    using Take = std::function<void(sd_bus_message& answer)>;

    /// The connection outlives this object and is used by nobody else meanwhile.
    explicit BusCalls(BusConnection& bus) : bus_(bus) {}
    BusCalls(const BusCalls&) = delete;
    BusCalls& operator=(const BusCalls&) = delete;

    /// Sent by `finish`.
    void add(BusMessage call, Take take);
    template <class... Arguments>
    void add(const BusObject& object, const char* method, Take take, const char* types = "", Arguments... arguments) {
        add(bus_.newCall(object, method, types, arguments...), std::move(take));
    }
    /// One property of the object's interface, of the D-Bus type `type`; `take` reads the value itself.
    void addProperty(const BusObject& object, const char* name, const char* type, Take take);

    /// Returns when each call has its answer or will have none, or at the deadline, after which answers are dropped.
    void finish(std::chrono::steady_clock::time_point deadline);

private:
    struct ReleaseSlot {
        void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
    };
    struct Call {
        BusCalls* owner;
        BusMessage message;
        Take take;
        std::unique_ptr<sd_bus_slot, ReleaseSlot> slot;
    };

    static int receive(sd_bus_message* answer, void* call, sd_bus_error*);
    void sendSome();
    bool isFinished() const { return answered_ == calls_.size(); }

    BusConnection& bus_;
    /// Calls stay where they are, since the connection points at them.
    std::deque<Call> calls_;
    std::size_t sent_ = 0, answered_ = 0;
};

} // namespace vesk
