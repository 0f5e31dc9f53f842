#pragma once

#include "VeskPlatform/Platform.hpp"
#include "vesk/CommandLine.hpp"

#include <string>

namespace vesk {

/// Runs `vesk liveness` and returns its record as JSON.
std::string runLiveness(const LivenessCommand& command, Platform& platform);

} // namespace vesk
