#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/ICloudModels.hpp"

#include <string>

namespace vesk {

/// Where a scope lies at this moment.
struct ICloudRoot {
    CapabilityICloudScope scope{};
    std::string containerIdentifier;
    std::string containerPath;
    std::string rootPath;
    /// What a response of the root says about it.
    std::string detail;
};

/// Looks afresh whether the cloud may be used, and for the root of the scope; makes the folder of the documents where
/// it is not there. Throws ICloudError, and what the file manager throws.
ICloudRoot resolveICloudRoot(Platform& platform, CapabilityICloudScope scope, const Bundle& bundle);

} // namespace vesk
