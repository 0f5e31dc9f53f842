#pragma once

#import <CoreGraphics/CoreGraphics.h>

#include <cstddef>
#include <cstdint>

namespace vesk {

/// Of the bitmaps that are drawn into: 32-bit little-endian pixels with premultiplied alpha first.
inline constexpr std::size_t bitsPerComponent = 8;
inline constexpr std::uint32_t pixelLayout = 0x2002;
static_assert(pixelLayout
              == (static_cast<std::uint32_t>(kCGBitmapByteOrder32Little)
                  | static_cast<std::uint32_t>(kCGImageAlphaPremultipliedFirst)));

} // namespace vesk
