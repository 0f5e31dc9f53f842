#include "VeskCapabilityBroker/ProgramEntry.hpp"
#include "VeskPlatform/Linux/LinuxPlatform.hpp"
#include "VeskShellCore/CapabilityModels.hpp"
#include "VeskShellCore/ShellDebugLogger.hpp"

namespace {

/// The words that a prompt shows for a capability.
std::pair<std::string, std::string> describe(const std::string& capabilityId) {
    const auto kind = vesk::fromRawValue<vesk::CapabilityKind>(capabilityId);
    if (!kind) return {capabilityId, {}};
    return {std::string(vesk::title(*kind)), std::string(vesk::shortSummary(*kind))};
}

} // namespace

int main(int count, char** values) {
    vesk::prepareProcess();
    vesk::LinuxPlatform platform({.describeCapability = describe, .log = {}});
    platform.setLog([ports = vesk::ShellDebugLogger::portsOf(platform)](const std::string& message) {
        vesk::ShellDebugLogger::log(ports, [&] { return message; });
    });
    return vesk::runProgram(count, values, platform);
}
