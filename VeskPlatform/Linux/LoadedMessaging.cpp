#include "VeskPlatform/Linux/LoadedMessaging.hpp"

#include "VeskPlatform/Linux/AdapterModule.hpp"

#include <algorithm>

namespace vesk {

Messaging& LoadedMessaging::messaging() {
    if (!messaging_) {
        const AdapterModule module(moduleFolder_, "messaging", "libsystemd0");
        messaging_.reset(module.function<MessagingFactory>("veskMessaging")());
    }
    return *messaging_;
}

ScriptRunResult LoadedMessaging::run(const MessagesScript& script) { return messaging().run(script); }

std::vector<MessagingServiceState> LoadedMessaging::survey() { return messaging().survey(); }

ApplicationReach LoadedMessaging::reach() {
    try {
        return reachOfMessaging(survey());
    } catch (const AdapterModuleMissing&) { // consent is what counts then; the request says what is missing
        return ApplicationReach::ready;
    }
}

void LoadedMessaging::start() {
    try {
        messaging().start();
    } catch (const AdapterModuleMissing&) { // the request itself tells
    }
}

ApplicationReach reachOfMessaging(const std::vector<MessagingServiceState>& states) {
    const auto hasDevice = [](const MessagingServiceState& state) { return !state.devices.empty(); };
    const auto isAbsent = [](const MessagingServiceState& state) {
        return state.presence == ServicePresence::absent && state.trouble.empty();
    };
    if (std::ranges::any_of(states, hasDevice)) return ApplicationReach::ready;
    return std::ranges::all_of(states, isAbsent) ? ApplicationReach::absent : ApplicationReach::unready;
}

} // namespace vesk
