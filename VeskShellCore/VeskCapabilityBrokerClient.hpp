#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/CapabilityModels.hpp"
#include "VeskSupport/Task.hpp"

#include <optional>
#include <string>

namespace vesk {

namespace VeskCapabilityBrokerLocator {

/// The path of the broker: the first that may be run of the one in the application bundle, the one that
/// VESK_CAPABILITY_BROKER names, and the one beside the running executable. Which of the first two comes first is
/// told in VeskRuntimeLocator. Throws VeskShellError `capabilityBrokerNotFound`.
std::string resolve(Platform& platform, std::optional<bool> preferBundledResources = std::nullopt);

} // namespace VeskCapabilityBrokerLocator

/// Asks the capability broker, one run of it for each question. Runs do not wait for each other. The platform outlives
/// whatever is asked.
class VeskCapabilityBrokerClient {
public:
    VeskCapabilityBrokerClient(Platform& platform, std::string brokerPath);
    /// The broker that is found. Throws as `resolve`.
    explicit VeskCapabilityBrokerClient(Platform& platform);

    const std::string& brokerPath() const { return brokerPath_; }

    /// Both throw what `runCommand` throws.
    Task<CapabilityStatusReport> status() const;
    Task<CapabilityRequestResponse> request(CapabilityKind kind) const;

private:
    Platform* platform_;
    std::string brokerPath_;
};

} // namespace vesk
