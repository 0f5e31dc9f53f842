#include "VeskPlatform/Linux/Wayland/WaylandApplications.hpp"

#include "VeskPlatform/Linux/Bus/SessionBus.hpp"
#include "VeskPlatform/Linux/Desktop/ProcessName.hpp"

#include <algorithm>
#include <chrono>

namespace vesk {
namespace {

/// For a program that hangs; others answer within a millisecond.
constexpr std::chrono::milliseconds patience{1'000};

/// Where a program of that identifier serves its own interface.
std::string objectPath(const std::string& identifier) {
    std::string path = "/" + identifier;
    std::ranges::replace(path, '.', '/');
    std::ranges::replace(path, '-', '_');
    return path;
}

} // namespace

WaylandApplications::WaylandApplications(Environment& environment)
    : applications_(environment, patience), files_(environment), opener_(environment, files_) {}

RunningApplication WaylandApplications::describe(const AccessibleApplication& accessible) {
    RunningApplication application{.processIdentifier = accessible.processIdentifier};
    const std::string process = processName(accessible.processIdentifier);
    auto file = files_.ofWindow({accessible.name, accessible.name, process});
    if (!file && !accessible.name.empty()) file = files_.withName(accessible.name);
    if (file) {
        application.bundleIdentifier = file->identifier;
        application.bundlePath = file->path;
    }
    for (const std::string& name : {file ? file->name : std::string(), accessible.name, process})
        if (!application.localizedName && !name.empty()) application.localizedName = name;
    return application;
}

std::vector<RunningApplication> WaylandApplications::list() {
    std::vector<RunningApplication> all;
    for (const AccessibleApplication& accessible : applications_.list()) all.push_back(describe(accessible));
    return all;
}

std::optional<RunningApplication> WaylandApplications::frontmost() {
    const auto active = applications_.active();
    return active ? std::optional(describe(*active)) : std::nullopt;
}

bool WaylandApplications::activate(const RunningApplication& application) {
    if (!application.bundleIdentifier) return false;
    const std::string& service = *application.bundleIdentifier;
    try {
        BusConnection bus = openSessionBus(patience);
        if (bus.presence(service, patience) != ServicePresence::running) return false;
        bus.call({service, objectPath(service), "org.freedesktop.Application"}, "Activate", patience, "a{sv}", 0);
        return true;
    } catch (const BusError&) { // it does not know how, or hangs
        return false;
    }
}

Task<int> WaylandApplications::runOpener(std::vector<std::string> arguments) { co_return opener_.run(arguments); }

} // namespace vesk
