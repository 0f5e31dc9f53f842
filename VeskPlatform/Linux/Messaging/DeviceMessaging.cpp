#include "VeskPlatform/Linux/Messaging/DeviceMessaging.hpp"

#include "VeskPlatform/Linux/Messaging/KdeConnectTexting.hpp"
#include "VeskPlatform/Linux/Messaging/ModemManagerTexting.hpp"

#include <algorithm>
#include <optional>

namespace vesk {

namespace {

using std::chrono::milliseconds;

/// A device that can send, with what reaches it.
struct Route {
    TextingService* service;
    BusConnection bus;
    TextingDevice device;
};

/// None where there is no such bus, which is nobody's failure: a machine may well do without one.
std::optional<BusConnection> openBus(BusKind kind, milliseconds patience) {
    try {
        return BusConnection(kind, patience);
    } catch (const BusError& error) {
        if (error.isTimeout()) throw;
        return std::nullopt;
    }
}

/// Why there is no route, service by service; without a word on those that are not there.
class Obstacles {
public:
    void add(const std::string& reason) { text_ += (text_.empty() ? "" : " ") + reason; }
    void add(const TextingService& service, const TextingDevice& device) {
        add("\"" + device.name + "\" of " + service.name() + " " + device.obstacle + ".");
    }
    std::string text() const {
        if (!text_.empty()) return text_;
        return "Neither ModemManager nor KDE Connect can be reached. Install modemmanager for a modem in this "
               "computer, "
               "or kdeconnect for a phone.";
    }

private:
    std::string text_;
};

std::optional<Route> routeThrough(TextingService& service, milliseconds patience, Obstacles& obstacles) {
    std::optional<BusConnection> bus = openBus(service.bus(), patience);
    if (!bus || bus->presence(service.busName(), patience) == ServicePresence::absent) return std::nullopt;
    const std::vector<TextingDevice> devices = service.devices(*bus, patience);
    if (devices.empty()) obstacles.add(service.name() + " has no device for text messages.");
    for (const TextingDevice& device : devices) {
        if (device.obstacle.empty()) return Route{&service, std::move(*bus), device};
        obstacles.add(service, device);
    }
    return std::nullopt;
}

std::optional<Route> firstRoute(const std::vector<std::unique_ptr<TextingService>>& services, milliseconds patience,
                                Obstacles& obstacles) {
    for (const auto& service : services) {
        try {
            if (auto route = routeThrough(*service, patience, obstacles)) return route;
        } catch (const BusError& error) { // the other service may still do
            obstacles.add(error.description());
        }
    }
    return std::nullopt;
}

ScriptRunResult failure(std::string message) {
    return {.status = 1, .output = {}, .errors = std::move(message) + "\n"};
}

ScriptRunResult answered(Route& route, const MessagesListQuestion& question) {
    ScriptRunResult result;
    const auto limit = static_cast<std::size_t>(std::max<std::int64_t>(question.limit, 0));
    for (const std::string& numbers : latestNumbers(route.service->chats(route.bus, route.device), limit))
        result.output += numbers + "\n";
    return result;
}

ScriptRunResult answered(Route& route, const MessagesSendQuestion& question) {
    route.service->send(route.bus, route.device, question);
    return {};
}

MessagingServiceState stateOf(TextingService& service, milliseconds patience) {
    MessagingServiceState state{.name = service.name(), .devices = {}, .trouble = {}};
    try {
        std::optional<BusConnection> bus = openBus(service.bus(), patience);
        if (bus) state.presence = bus->presence(service.busName(), patience);
        if (state.presence != ServicePresence::running) return state;
        for (TextingDevice& device : service.devices(*bus, patience))
            state.devices.push_back({std::move(device.name), std::move(device.obstacle)});
    } catch (const BusError& error) {
        state.trouble = error.description();
    }
    return state;
}

} // namespace

DeviceMessaging::DeviceMessaging(const MessagingPatience& patience) : patience_(patience) {
    services_.push_back(std::make_unique<ModemManagerTexting>(patience));
    services_.push_back(std::make_unique<KdeConnectTexting>(patience));
}

ScriptRunResult DeviceMessaging::run(const MessagesScript& script) {
    Obstacles obstacles;
    std::optional<Route> route = firstRoute(services_, patience_.request, obstacles);
    if (!route) return failure(obstacles.text());
    try {
        return std::visit([&](const auto& question) { return answered(*route, question); }, script.question);
    } catch (const BusError& error) {
        return failure(error.description());
    }
}

std::vector<MessagingServiceState> DeviceMessaging::survey() {
    std::vector<MessagingServiceState> states;
    for (const auto& service : services_) states.push_back(stateOf(*service, patience_.survey));
    return states;
}

void DeviceMessaging::start() {
    for (const auto& service : services_) {
        try {
            // The bus itself answers at once where it answers at all; a service may take its time to come up.
            std::optional<BusConnection> bus = openBus(service->bus(), patience_.survey);
            if (bus && bus->presence(service->busName(), patience_.survey) == ServicePresence::dormant)
                bus->start(service->busName(), patience_.request);
        } catch (const BusError&) { // the next look tells
        }
    }
}

} // namespace vesk
