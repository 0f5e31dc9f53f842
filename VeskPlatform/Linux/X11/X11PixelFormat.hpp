#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>
#include <xcb/xcb.h>

namespace vesk {

/// How a server lays out the pixels of a picture with direct colours.
struct X11PixelFormat {
    /// 16, 24 or 32.
    int bitsPerPixel = 0;
    /// From one row to the next, in units of bits.
    int scanlinePad = 0;
    bool isMostSignificantFirst = false;
    std::uint32_t redMask = 0, greenMask = 0, blueMask = 0;

    /// In bytes.
    std::size_t rowLength(std::size_t width) const;
    /// Whether pixels are 0x??RRGGBB in this machine's byte order, with rows that have nothing between them.
    bool isNative() const;
};

/// The format of a screen's root window; none where its colours are numbers of a palette.
std::optional<X11PixelFormat> rootPixelFormat(const xcb_setup_t& setup, const xcb_screen_t& screen);

/// Rows of `width` pixels turned into 0xFFRRGGBB. `bytes` holds all rows.
std::vector<std::uint32_t> convertedPixels(const X11PixelFormat& format, const std::uint8_t* bytes, std::size_t width,
                                           std::size_t height);

} // namespace vesk
