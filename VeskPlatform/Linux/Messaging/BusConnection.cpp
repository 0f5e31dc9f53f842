#include "VeskPlatform/Linux/Messaging/BusConnection.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
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

std::string systemText(int errnoValue) { return std::strerror(errnoValue); }

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
    return {name, errnoValue, worded ? error.message : service + ": " + systemText(errnoValue)};
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

struct SlotRelease {
    void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};

BusValue readVariant(sd_bus_message& message) {
    char type = 0;
    const char* contents = nullptr;
    BusConnection::required(sd_bus_message_peek_type(&message, &type, &contents));
    const std::string_view kind(contents == nullptr ? "" : contents);
    if (kind.size() != 1 || std::string_view("sobynqiuxt").find(kind.front()) == std::string_view::npos) {
        BusConnection::required(sd_bus_message_skip(&message, "v"));
        return {};
    }
    BusValue value;
    readItems(message, 'v', contents, [&, only = kind.front()] {
        if (only == 's' || only == 'o')
            value = readText(message, only);
        else if (only == 'b')
            value = readInteger(message, only) != 0;
        else
            value = readInteger(message, only);
    });
    return value;
}

template <class Number> std::int64_t readNumber(sd_bus_message& message, char type) {
    Number number{};
    if (BusConnection::required(sd_bus_message_read_basic(&message, type, &number)) == 0)
        BusConnection::required(-ENXIO);
    return static_cast<std::int64_t>(number);
}

} // namespace

bool BusError::isAbsence() const {
    return domain() == SD_BUS_ERROR_UNKNOWN_OBJECT || domain() == SD_BUS_ERROR_UNKNOWN_METHOD
           || domain() == SD_BUS_ERROR_UNKNOWN_INTERFACE;
}

bool BusError::isTimeout() const { return domain() == SD_BUS_ERROR_TIMEOUT || domain() == SD_BUS_ERROR_NO_REPLY; }

int BusConnection::required(int result) {
    if (result < 0) throw BusError(SD_BUS_ERROR_FAILED, -result, "D-Bus: " + systemText(-result));
    return result;
}

BusConnection::BusConnection(BusKind kind, milliseconds patience) {
    sd_bus* bus = nullptr;
    required(kind == BusKind::system ? sd_bus_open_system(&bus) : sd_bus_open_user(&bus));
    bus_.reset(bus);
    awaitReadiness(patience);
}

/// A call on a connection that is still being made would wait for that without a limit.
void BusConnection::awaitReadiness(milliseconds patience) {
    const Deadline deadline = after(patience);
    while (required(sd_bus_is_ready(bus_.get())) == 0) {
        if (required(sd_bus_process(bus_.get(), nullptr)) > 0) continue;
        const std::uint64_t left = microsecondsUntil(deadline);
        if (left == 0)
            throw callFailure(ETIMEDOUT, SD_BUS_ERROR_MAKE_CONST(SD_BUS_ERROR_TIMEOUT, ""), "The bus", patience);
        required(sd_bus_wait(bus_.get(), left));
    }
}

BusMessage BusConnection::newCall(const BusObject& object, const char* method) {
    sd_bus_message* message = nullptr;
    required(sd_bus_message_new_method_call(bus_.get(), &message, object.service.c_str(), object.path.c_str(),
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
    required(sd_bus_match_signal(bus_.get(), &slot, object.service.c_str(), object.path.c_str(),
                                 object.interface.c_str(), nullptr, &noteSignal, &arrived));
    const std::unique_ptr<sd_bus_slot, SlotRelease> held(slot);
    cause();
    Deadline deadline = after(first);
    while (const std::uint64_t left = microsecondsUntil(deadline)) {
        if (required(sd_bus_process(bus_.get(), nullptr)) == 0) required(sd_bus_wait(bus_.get(), left));
        if (std::exchange(arrived, false)) deadline = after(next);
    }
}

std::string readText(sd_bus_message& message, char type) {
    const char* text = nullptr;
    if (BusConnection::required(sd_bus_message_read_basic(&message, type, &text)) == 0) BusConnection::required(-ENXIO);
    return text;
}

std::int64_t readInteger(sd_bus_message& message, char type) {
    switch (type) {
    case 'y': return readNumber<std::uint8_t>(message, type);
    case 'n': return readNumber<std::int16_t>(message, type);
    case 'q': return readNumber<std::uint16_t>(message, type);
    case 'b':
    case 'i': return readNumber<std::int32_t>(message, type);
    case 'u': return readNumber<std::uint32_t>(message, type);
    default: return readNumber<std::int64_t>(message, type);
    }
}

BusProperties readProperties(sd_bus_message& message) {
    BusProperties properties;
    readItems(message, 'a', "{sv}", [&] {
        readItems(message, 'e', "sv", [&] {
            std::string name = readText(message);
            properties[std::move(name)] = readVariant(message);
        });
    });
    return properties;
}

void readItems(sd_bus_message& message, char type, const char* contents, const std::function<void()>& readItem) {
    if (BusConnection::required(sd_bus_message_enter_container(&message, type, contents)) == 0)
        BusConnection::required(-ENXIO);
    while (BusConnection::required(sd_bus_message_at_end(&message, 0)) == 0) readItem();
    BusConnection::required(sd_bus_message_exit_container(&message));
}

std::string textOf(const BusProperties& properties, const std::string& name) {
    const auto found = properties.find(name);
    const auto* text = found == properties.end() ? nullptr : std::get_if<std::string>(&found->second);
    return text == nullptr ? std::string() : *text;
}

std::int64_t integerOf(const BusProperties& properties, const std::string& name, std::int64_t otherwise) {
    const auto found = properties.find(name);
    const auto* number = found == properties.end() ? nullptr : std::get_if<std::int64_t>(&found->second);
    return number == nullptr ? otherwise : *number;
}

} // namespace vesk
