#pragma once

#include "VeskPlatform/Displays.hpp"

#include <cstddef>
#include <cstdint>

namespace vesk {

/// A picture as rows of 32-bit pixels, each 0xAARRGGBB in the machine's own byte order with colours premultiplied by
/// alpha. Adapters derive from it and own the memory.
class PixelImage : public ScreenImage {
public:
    /// Of the first row; valid while the image is.
    virtual const std::uint32_t* pixels() const = 0;
    /// From one row to the next, in pixels; at least the width.
    virtual std::size_t stride() const = 0;
    /// Whether every pixel counts as opaque, whatever its alpha bits hold.
    virtual bool isOpaque() const = 0;
};

} // namespace vesk
