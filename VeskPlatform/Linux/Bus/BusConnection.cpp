#include "VeskPlatform/Linux/Bus/BusConnection.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <string_view>
#include <utility>

namespace vesk {

namespace {

using std::chrono::milliseconds;
using Deadline = std::chrono::steady_clock::time_point;

Deadline after(milliseconds patience) { return std::chrono::steady_clock::now() + patience; }

/// In the unit of sd-bus; none past the deadline.
std::uint64_t microsecondsUntil(Deadline deadline) {
    const auto left =
        std::chrono::duration_cast<std::chrono::microseconds>(deadline - std::chrono::steady_clock::now());
    return static_cast<std::uint64_t>(std::max<std::int64_t>(left.count(), 0));
}

BusObject theBus() { return {"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus"}; }

std::string seconds(milliseconds patience) {
    const auto whole = std::chrono::ceil<std::chrono::seconds>(patience).count();
    return std::to_string(whole) + (whole == 1 ? " second" : " seconds");
}

/// The one place where a failed call of sd-bus becomes a failure of ours.
BusError callFailure(int errnoValue, const sd_bus_error& error, const std::string& service, milliseconds patience) {
    const std::string name = error.name == nullptr ? std::string(SD_BUS_ERROR_FAILED) : error.name;
    if (name == SD_BUS_ERROR_TIMEOUT) // sd-bus itself gave up; a service's own words have other names
        return {name, ETIMEDOUT, service + " did not answer within " + seconds(patience) + "."};
    const bool worded = error.message != nullptr && *error.message != '\0';
    return {name, errnoValue, worded ? error.message : service + ": " + std::strerror(errnoValue)};
}

struct ErrorHolder {
    sd_bus_error error = SD_BUS_ERROR_NULL;
    ErrorHolder() = default;
    ErrorHolder(const ErrorHolder&) = delete;
    ErrorHolder& operator=(const ErrorHolder&) = delete;
    ~ErrorHolder() { sd_bus_error_free(&error); }
};

bool namesService(sd_bus_message& names, const std::string& service) {
    bool found = false;
    readItems(names, 'a', "s", [&] { found |= readText(names) == service; });
    return found;
}

int noteSignal(sd_bus_message*, void* data, sd_bus_error*) {
    *static_cast<bool*>(data) = true;
    return 0;
}

/// Signals as they came, each by the path of its object; the last of a path counts.
using Signals = std::map<std::string, BusMessage>;

int keepSignal(sd_bus_message* signal, void* data, sd_bus_error*) {
    (*static_cast<Signals*>(data))[sd_bus_message_get_path(signal)].reset(sd_bus_message_ref(signal));
    return 0;
}

struct SlotRelease {
    void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};

using Slot = std::unique_ptr<sd_bus_slot, SlotRelease>;

} // namespace

BusConnection::BusConnection(BusKind kind, milliseconds patience) {
    sd_bus* bus = nullptr;
    busRequired(kind == BusKind::system ? sd_bus_open_system(&bus) : sd_bus_open_user(&bus));
    bus_.reset(bus);
    awaitReadiness(patience);
}

BusConnection::BusConnection(const std::string& address, milliseconds patience) {
    sd_bus* bus = nullptr;
    busRequired(sd_bus_new(&bus));
    bus_.reset(bus);
    busRequired(sd_bus_set_address(bus, address.c_str()));
    busRequired(sd_bus_set_bus_client(bus, 1));
    busRequired(sd_bus_start(bus));
    awaitReadiness(patience);
}

/// A call on a connection that is still being made would wait for that without a limit.
void BusConnection::awaitReadiness(milliseconds patience) {
    const Deadline deadline = after(patience);
    while (busRequired(sd_bus_is_ready(bus_.get())) == 0) {
        if (busRequired(sd_bus_process(bus_.get(), nullptr)) > 0) continue;
        const std::uint64_t left = microsecondsUntil(deadline);
        if (left == 0)
            throw callFailure(ETIMEDOUT, SD_BUS_ERROR_MAKE_CONST(SD_BUS_ERROR_TIMEOUT, ""), "The bus", patience);
        busRequired(sd_bus_wait(bus_.get(), left));
    }
}

BusMessage BusConnection::newCall(const BusObject& object, const char* method) {
    sd_bus_message* message = nullptr;
    busRequired(sd_bus_message_new_method_call(bus_.get(), &message, object.service.c_str(), object.path.c_str(),
                                               object.interface.c_str(), method));
    return BusMessage(message);
}

BusMessage BusConnection::answer(sd_bus_message& message, milliseconds patience) {
    ErrorHolder failure;
    sd_bus_message* reply = nullptr;
    const auto limit = static_cast<std::uint64_t>(std::chrono::microseconds(patience).count());
    const int result = sd_bus_call(bus_.get(), &message, limit, &failure.error, &reply);
    if (result < 0) throw callFailure(-result, failure.error, sd_bus_message_get_destination(&message), patience);
    return BusMessage(reply);
}

ServicePresence BusConnection::presence(const std::string& service, milliseconds patience) {
    if (namesService(*call(theBus(), "ListNames", patience), service)) return ServicePresence::running;
    const bool startable = namesService(*call(theBus(), "ListActivatableNames", patience), service);
    return startable ? ServicePresence::dormant : ServicePresence::absent;
}

void BusConnection::start(const std::string& service, milliseconds patience) {
    call(theBus(), "StartServiceByName", patience, "su", service.c_str(), 0U);
}

BusProperties BusConnection::properties(const BusObject& object, milliseconds patience) {
    const BusMessage reply = call(object.with(object.path, "org.freedesktop.DBus.Properties"), "GetAll", patience, "s",
                                  object.interface.c_str());
    return readProperties(*reply);
}

void BusConnection::awaitSignals(const BusObject& object, const std::function<void()>& cause, milliseconds first,
                                 milliseconds next) {
    bool arrived = false;
    sd_bus_slot* slot = nullptr;
    busRequired(sd_bus_match_signal(bus_.get(), &slot, object.service.c_str(), object.path.c_str(),
                                    object.interface.c_str(), nullptr, &noteSignal, &arrived));
    const Slot held(slot);
    cause();
    Deadline deadline = after(first);
    while (const std::uint64_t left = microsecondsUntil(deadline)) {
        if (busRequired(sd_bus_process(bus_.get(), nullptr)) == 0) busRequired(sd_bus_wait(bus_.get(), left));
        if (std::exchange(arrived, false)) deadline = after(next);
    }
}

BusMessage BusConnection::awaitSignal(const BusObject& object, const char* member,
                                      const std::function<std::string()>& cause, milliseconds patience) {
    Signals signals;
    sd_bus_slot* slot = nullptr;
    busRequired(sd_bus_match_signal(bus_.get(), &slot, object.service.c_str(), nullptr, object.interface.c_str(),
                                    member, &keepSignal, &signals));
    const Slot held(slot);
    const std::string path = cause();
    const Deadline deadline = after(patience);
    for (;;) {
        if (const auto found = signals.find(path); found != signals.end()) return std::move(found->second);
        if (busRequired(sd_bus_process(bus_.get(), nullptr)) > 0) continue;
        const std::uint64_t left = microsecondsUntil(deadline);
        if (left == 0) return {};
        busRequired(sd_bus_wait(bus_.get(), left));
    }
}

} // namespace vesk
