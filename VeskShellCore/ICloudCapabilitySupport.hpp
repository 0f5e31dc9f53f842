#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/CapabilityModels.hpp"

#include <optional>
#include <string>
#include <vector>

namespace vesk {

/// What a build says about its use of the cloud.
struct ICloudBuildConfiguration {
    bool enabled = false;
    std::optional<std::string> containerIdentifier;
    /// The services that the build expects to be granted.
    std::vector<std::string> services;
    std::optional<std::string> teamIdentifier;

    bool operator==(const ICloudBuildConfiguration&) const = default;
};

/// Compares what the build wants, what its signature grants and what the user has set up. Nothing here fails.
namespace VeskICloudCapabilitySupport {

/// From the bundle's information dictionary. A container or a service is enough to enable the cloud.
ICloudBuildConfiguration buildConfiguration(Platform& platform, const Bundle& bundle);

/// None where neither the build nor its signature knows of the cloud.
std::optional<CapabilityStatus> configuredStatus(Platform& platform, const Bundle& bundle);

} // namespace VeskICloudCapabilitySupport
} // namespace vesk
