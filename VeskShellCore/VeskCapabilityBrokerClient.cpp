#include "VeskShellCore/VeskCapabilityBrokerClient.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/FileManager.hpp"
#include "VeskShellCore/BrokerPaths.hpp"
#include "VeskShellCore/CommandExecution.hpp"
#include "VeskShellCore/VeskRuntimeLocator.hpp"
#include "VeskShellCore/VeskShellError.hpp"
#include "VeskShellCore/WorkingDirectory.hpp"
#include "VeskSupport/FilePath.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <utility>
#include <vector>

namespace vesk {

namespace VeskCapabilityBrokerLocator {
namespace {

std::vector<std::string> candidates(Platform& platform, bool prefer) {
    std::vector<std::string> found;
    if (const auto path = trimmedOrAbsent(platform.environment().value("VESK_CAPABILITY_BROKER")))
        found.push_back(absolutePath(platform.fileManager(), *path));
    const Bundle& bundle = platform.mainBundle();
    if (const auto application = bundlePath(bundle))
        found.insert(prefer ? found.begin() : found.end(), *application + "/Contents/Helpers/VeskCapabilityBroker");
    if (!bundle.executablePath) return found;
    const std::string folder = parentFolder(*bundle.executablePath);
    const std::string sibling = (folder == "/" ? "" : folder) + "/VeskCapabilityBroker";
    if (std::ranges::find(found, sibling) == found.end()) found.push_back(sibling);
    return found;
}

} // namespace

std::string resolve(Platform& platform, std::optional<bool> preferBundledResources) {
    const bool prefer = VeskRuntimeLocator::shouldPreferBundledResources(platform, preferBundledResources);
    const std::vector<std::string> all = candidates(platform, prefer);
    for (const std::string& path : all)
        if (platform.fileManager().isExecutableFile(path)) return path;
    throw VeskShellError::capabilityBrokerNotFound(all);
}

} // namespace VeskCapabilityBrokerLocator

namespace {

CommandRun brokerRun(const std::string& path, std::vector<std::string> arguments) {
    CommandRun run;
    run.area = "capability-broker";
    run.launch.executable = path;
    run.launch.arguments = std::move(arguments);
    return run;
}

} // namespace

VeskCapabilityBrokerClient::VeskCapabilityBrokerClient(Platform& platform, std::string brokerPath)
    : platform_(&platform), brokerPath_(std::move(brokerPath)) {}

VeskCapabilityBrokerClient::VeskCapabilityBrokerClient(Platform& platform)
    : VeskCapabilityBrokerClient(platform, VeskCapabilityBrokerLocator::resolve(platform)) {}

Task<CapabilityStatusReport> VeskCapabilityBrokerClient::status() const {
    return runJson<CapabilityStatusReport>(*platform_, brokerRun(brokerPath_, {"status"}));
}

Task<CapabilityRequestResponse> VeskCapabilityBrokerClient::request(CapabilityKind kind) const {
    return runJson<CapabilityRequestResponse>(*platform_,
                                              brokerRun(brokerPath_, {"request", std::string(rawValue(kind))}));
}

} // namespace vesk
