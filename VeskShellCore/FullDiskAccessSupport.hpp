#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/CapabilityModels.hpp"

#include <string>

namespace vesk::VeskFullDiskAccessSupport {

/// Whether the process can read the platform's protected places, found out by trying them in their order until one
/// answers. Without proof the state is denied. Blocks the calling thread, never fails.
CapabilityStatus status(Platform& platform, const std::string& homeDirectoryPath);

} // namespace vesk::VeskFullDiskAccessSupport
