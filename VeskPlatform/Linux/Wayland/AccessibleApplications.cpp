#include "VeskPlatform/Linux/Wayland/AccessibleApplications.hpp"

#include "VeskPlatform/Linux/Bus/AccessibilityAddress.hpp"
#include "VeskPlatform/Linux/Bus/BusCalls.hpp"

#include <algorithm>
#include <utility>

namespace vesk {

/// An application on the list and what is asked of it.
struct AccessibleApplications::Candidate {
    BusObject root;
    AccessibleApplication description;
    bool isActive = false;
};

namespace {

constexpr const char* accessibleInterface = "org.a11y.atspi.Accessible";
/// ATSPI_STATE_ACTIVE, of the first of two numbers with a bit for each state.
constexpr unsigned activeState = 1;

std::vector<BusObject> readObjects(sd_bus_message& message) {
    std::vector<BusObject> objects;
    readItems(message, 'a', "(so)", [&] {
        readItems(message, 'r', "so", [&] {
            std::string service = readText(message);
            objects.push_back({std::move(service), readText(message, 'o'), accessibleInterface});
        });
    });
    return objects;
}

bool tellsActive(sd_bus_message& states) {
    std::vector<std::int64_t> bits;
    readItems(states, 'a', "u", [&] { bits.push_back(readInteger(states, 'u')); });
    return !bits.empty() && (bits.front() >> activeState & 1) != 0;
}

/// The daemon of the bus answers for a program that hangs.
void askForProcess(BusCalls& calls, const BusObject& root, AccessibleApplication& answer) {
    const BusObject daemon{"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus"};
    calls.add(
        daemon, "GetConnectionUnixProcessID",
        [&answer](sd_bus_message& reply) {
            answer.processIdentifier = static_cast<std::int32_t>(readInteger(reply, 'u'));
        },
        "s", root.service.c_str());
}

void askForName(BusCalls& calls, const BusObject& root, AccessibleApplication& answer) {
    calls.addProperty(root, "Name", "s", [&answer](sd_bus_message& reply) { answer.name = readText(reply); });
}

void askForActivity(BusCalls& calls, const BusObject& root, bool& answer) {
    calls.add(root, "GetChildren", [&calls, &answer](sd_bus_message& windows) {
        for (const BusObject& window : readObjects(windows))
            calls.add(window, "GetState",
                      [&answer](sd_bus_message& states) { answer = answer || tellsActive(states); });
    });
}

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

std::vector<AccessibleApplications::Candidate> AccessibleApplications::candidates() {
    const BusObject registry{"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root", accessibleInterface};
    const BusMessage listed = bus().call(registry, "GetChildren", patience_);
    std::vector<Candidate> all;
    for (BusObject& root : readObjects(*listed)) all.push_back({.root = std::move(root), .description = {}});

    BusCalls calls(bus());
    for (Candidate& candidate : all) {
        askForProcess(calls, candidate.root, candidate.description);
        askForName(calls, candidate.root, candidate.description);
        askForActivity(calls, candidate.root, candidate.isActive);
    }
    calls.finish(std::chrono::steady_clock::now() + patience_);
    // Without a process it left the bus meanwhile.
    std::erase_if(all, [](const Candidate& candidate) { return candidate.description.processIdentifier == 0; });
    return all;
}

std::vector<AccessibleApplication> AccessibleApplications::list() {
    std::vector<AccessibleApplication> applications;
    for (Candidate& candidate : candidates()) applications.push_back(std::move(candidate.description));
    return applications;
}

std::optional<AccessibleApplication> AccessibleApplications::active() {
    const auto all = candidates();
    const auto found = std::ranges::find_if(all, &Candidate::isActive);
    return found == all.end() ? std::nullopt : std::optional(found->description);
}

} // namespace vesk
