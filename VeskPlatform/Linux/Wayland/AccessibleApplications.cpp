#include "VeskPlatform/Linux/Wayland/AccessibleApplications.hpp"

#include "VeskPlatform/Linux/Bus/AccessibilityAddress.hpp"

#include <algorithm>
#include <utility>

namespace vesk {
namespace {

constexpr const char* accessibleInterface = "org.a11y.atspi.Accessible";
/// ATSPI_STATE_ACTIVE, of the first of two numbers with a bit for each state.
constexpr unsigned activeState = 1;

BusObject registry() { return {"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root", accessibleInterface}; }

} // namespace

AccessibleApplications::AccessibleApplications(Environment& environment, std::chrono::milliseconds patience)
    : environment_(environment), patience_(patience) {}

BusConnection& AccessibleApplications::bus() {
    if (!bus_) {
        const std::string address = accessibilityBusAddress(environment_, patience_);
        try {
            bus_.emplace(address, patience_);
        } catch (const BusError& error) {
            throw AccessibilityUnavailable(error.description());
        }
    }
    return *bus_;
}

std::vector<BusObject> AccessibleApplications::children(const BusObject& accessible) {
    const BusMessage reply = bus().call(accessible, "GetChildren", patience_);
    std::vector<BusObject> found;
    readItems(*reply, 'a', "(so)", [&] {
        readItems(*reply, 'r', "so", [&] {
            std::string service = readText(*reply);
            found.push_back({std::move(service), readText(*reply, 'o'), accessibleInterface});
        });
    });
    return found;
}

void AccessibleApplications::forEach(const Visit& visit) {
    for (const BusObject& root : children(registry())) {
        try {
            if (visit(root)) return;
        } catch (const BusError&) { // it has gone, or hangs
        }
    }
}

bool AccessibleApplications::isActive(const BusObject& window) {
    const BusMessage reply = bus().call(window, "GetState", patience_);
    std::vector<std::int64_t> states;
    readItems(*reply, 'a', "u", [&] { states.push_back(readInteger(*reply, 'u')); });
    return !states.empty() && (states.front() >> activeState & 1) != 0;
}

AccessibleApplication AccessibleApplications::describe(const BusObject& root) {
    const BusObject daemon{"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus"};
    const BusMessage process = bus().call(daemon, "GetConnectionUnixProcessID", patience_, "s", root.service.c_str());
    const BusMessage name = bus().call(root.with(root.path, "org.freedesktop.DBus.Properties"), "Get", patience_, "ss",
                                       accessibleInterface, "Name");
    const BusValue value = readVariant(*name);
    const auto* text = std::get_if<std::string>(&value);
    return {static_cast<std::int32_t>(readInteger(*process, 'u')), text == nullptr ? std::string() : *text};
}

std::vector<AccessibleApplication> AccessibleApplications::list() {
    std::vector<AccessibleApplication> applications;
    forEach([&](const BusObject& root) {
        applications.push_back(describe(root));
        return false;
    });
    return applications;
}

std::optional<AccessibleApplication> AccessibleApplications::active() {
    std::optional<AccessibleApplication> found;
    forEach([&](const BusObject& root) {
        const auto windows = children(root);
        if (std::ranges::none_of(windows, [this](const BusObject& window) { return isActive(window); })) return false;
        found = describe(root);
        return true;
    });
    return found;
}

} // namespace vesk
