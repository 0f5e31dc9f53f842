#include "VeskCapabilityBroker/BrokerMain.hpp"
#include "VeskCapabilityBroker/DescriptorOutput.hpp"
#include "VeskPlatform/Linux/LinuxPlatform.hpp"
#include "VeskShellCore/CapabilityModels.hpp"
#include "VeskShellCore/ShellDebugLogger.hpp"

#include <csignal>
#include <unistd.h>

namespace {

/// The words that a prompt shows for a capability.
std::pair<std::string, std::string> describe(const std::string& capabilityId) {
    const auto kind = vesk::fromRawValue<vesk::CapabilityKind>(capabilityId);
    if (!kind) return {capabilityId, {}};
    return {std::string(vesk::title(*kind)), std::string(vesk::shortSummary(*kind))};
}

} // namespace

int main(int count, char** values) {
    // A reader that went away is a failed write with its line on standard error, not a silent death.
    std::signal(SIGPIPE, SIG_IGN);
    // So is a write past the user's limit of a file's size.
    std::signal(SIGXFSZ, SIG_IGN);
    vesk::reserveStandardDescriptors();

    vesk::LinuxPlatform platform({.describeCapability = describe, .log = {}});
    platform.setLog([ports = vesk::ShellDebugLogger::portsOf(platform)](const std::string& message) {
        vesk::ShellDebugLogger::log(ports, [&] { return message; });
    });
    vesk::DescriptorOutput output(STDOUT_FILENO, "standard output");
    vesk::DescriptorOutput errorOutput(STDERR_FILENO, "standard error");
    return vesk::runBroker({values, values + count}, platform, output, errorOutput);
}
