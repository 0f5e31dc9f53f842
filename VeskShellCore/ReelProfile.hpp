#pragma once

#include "VeskPlatform/MediaGeometry.hpp"

#include <cstddef>
#include <cstdint>

/// The fixed geometry, pace and limits of a vertical reel.
namespace vesk::reel {

inline constexpr std::size_t width = 1080, height = 1920;
inline constexpr MediaSize renderSize{static_cast<double>(width), static_cast<double>(height)};
inline constexpr std::int32_t framesPerSecond = 30;
/// In bits per second.
inline constexpr std::int64_t imageClipBitRate = 6'000'000;
inline constexpr std::size_t mostInputs = 24;
/// In seconds.
inline constexpr double defaultImageDuration = 3, shortestImageDuration = 3, longestImageDuration = 10;

} // namespace vesk::reel
