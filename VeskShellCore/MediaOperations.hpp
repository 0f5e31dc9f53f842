#pragma once

#include "VeskPlatform/Bundle.hpp"
#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/MediaModels.hpp"
#include "VeskSupport/Task.hpp"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vesk::VeskMediaOperations {

/// Composes images and clips, in their order, into one vertical film. Inputs with a blank path are left out, missing
/// folders are made, and an existing file at the output is lost even where the composition then fails. `progress` hears
/// how much is done, from 0 to 1. Throws MediaError, and what the file system and the media framework throw.
Task<CapabilityMediaComposeResponse> compose(Platform& platform, CapabilityMediaComposeProfile profile,
                                             std::vector<CapabilityMediaComposeInput> inputs, std::string outputPath,
                                             std::optional<double> imageDurationSeconds, Bundle bundle,
                                             std::function<void(double)> progress = {});

} // namespace vesk::VeskMediaOperations
