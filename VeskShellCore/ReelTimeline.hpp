#pragma once

#include "VeskPlatform/MediaFramework.hpp"
#include "VeskSupport/Task.hpp"

#include <functional>
#include <string>
#include <vector>

namespace vesk {

/// Lays clips end to end, each letterboxed on black and with its sound, and exports them as one file; its length in
/// seconds. `progress` hears how much of the export is done, from 0 to 1. Throws MediaError, and what the framework
/// throws; a clip whose sound cannot be had goes on without it.
Task<double> concatenateVideoClips(MediaFramework& media, std::vector<std::string> clips, std::string outputPath,
                                   std::function<void(double)> progress);

} // namespace vesk
