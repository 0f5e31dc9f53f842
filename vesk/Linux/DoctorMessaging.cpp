#include "vesk/Linux/DoctorMessaging.hpp"

#include "VeskPlatform/Linux/AdapterModule.hpp"
#include "VeskPlatform/Linux/LoadedMessaging.hpp"
#include "VeskPlatform/Linux/MainBundle.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>

namespace vesk {

namespace {

constexpr const char* services = "ModemManager or KDE Connect";

bool isPresent(const MessagingServiceState& state) { return state.presence != ServicePresence::absent; }

/// Such as "KDE Connect: Fairphone"; without a device that can send, the services that might have one.
std::string servedBy(const std::vector<MessagingServiceState>& states) {
    std::vector<std::string> present;
    for (const MessagingServiceState& state : states) {
        for (const MessagingDevice& device : state.devices)
            if (device.obstacle.empty()) return state.name + ": " + device.name;
        if (state.presence == ServicePresence::dormant) present.push_back(state.name + " (started when it is asked)");
        if (state.presence == ServicePresence::running) present.push_back(state.name);
    }
    return present.empty() ? services : joined(present, " or ");
}

void addTroubles(const MessagingServiceState& state, std::vector<DoctorFinding>& findings) {
    if (!state.trouble.empty()) findings.push_back({state.trouble, "Start " + state.name + " anew."});
    for (const MessagingDevice& device : state.devices)
        if (!device.obstacle.empty())
            findings.push_back(
                {"\"" + device.name + "\" of " + state.name + " " + device.obstacle + ".", std::nullopt});
}

/// Running services of which none has a device.
bool lacksDevice(const std::vector<MessagingServiceState>& states) {
    return std::ranges::all_of(states, [](const MessagingServiceState& state) {
        return state.devices.empty() && state.trouble.empty() && state.presence != ServicePresence::dormant;
    });
}

} // namespace

DoctorService messagingService(const std::vector<MessagingServiceState>& states) {
    DoctorService result{servedBy(states), {}};
    for (const MessagingServiceState& state : states) addTroubles(state, result.findings);
    if (!lacksDevice(states)) return result;
    if (std::ranges::any_of(states, isPresent))
        result.findings.push_back({"No device for text messages is there.",
                                   "Plug in a modem, or pair a phone with KDE Connect and keep it in reach."});
    else
        result.findings.push_back({"Neither messaging service is on its bus.",
                                   "apt install modemmanager, or apt install kdeconnect and start it"});
    return result;
}

DoctorService examineMessaging() {
    try {
        return messagingService(LoadedMessaging(moduleFolderOf(runningExecutable())).survey());
    } catch (const AdapterModuleMissing& error) {
        return {services, {{error.description(), "apt install libsystemd0"}}};
    }
}

} // namespace vesk
