#include "VeskShellCore/VeskAssistantRunningIntent.hpp"

namespace vesk {

bool VeskAssistantRunningIntent::resolve(const PackagedServiceStatus& serviceStatus,
                                         std::optional<bool> durableWasRunning) {
    if (durableWasRunning) return *durableWasRunning;
    const auto& daemon = serviceStatus.daemonRuntime;
    if (serviceStatus.running || serviceStatus.loaded || (daemon && daemon->processAlive)) return true;
    return serviceStatus.installed && serviceStatus.enabled.value_or(true);
}

} // namespace vesk
