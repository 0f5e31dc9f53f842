#pragma once

#include "VeskPlatform/MediaFramework.hpp"
#include "VeskPlatform/Platform.hpp"
#include "VeskSupport/Task.hpp"

#include <cstdint>
#include <memory>
#include <string>

// A picture becomes a silent clip of the reel's size.

namespace vesk {

/// How many frames a clip of that many seconds has: at least one, the last one begun.
std::int64_t imageClipFrames(double durationSeconds);

/// A frame with the picture letterboxed on black. Throws MediaError.
std::shared_ptr<PixelBuffer> makePixelBuffer(MediaFramework& media, const std::string& imagePath);

/// Writes the clip, replacing a file of that name. Throws MediaError, and what the writer throws.
Task<void> writeImageClip(Platform& platform, std::string imagePath, std::string outputPath, double durationSeconds);

} // namespace vesk
