#pragma once

#include "VeskPlatform/Linux/Media/FfmpegObjects.hpp"
#include "VeskPlatform/Linux/Media/Orientation.hpp"

#include <functional>
#include <string>

namespace vesk {

/// A rectangle of whole pixels.
struct PixelRectangle {
    int x = 0, y = 0, width = 0, height = 0;

    bool operator==(const PixelRectangle&) const = default;
};

/// The filters for pictures of the form that one has, in FFmpeg's words.
using FilterChain = std::function<std::string(const AVFrame& picture)>;

/// Turns a clip's picture upright and puts it into a rectangle, on even pixels, of a black frame: 8-bit 4:2:0 of ITU-R
/// BT.709 in the limited range. High dynamic range is mapped down.
FilterChain clipChain(Orientation orientation, const PixelRectangle& rectangle, int frameWidth, int frameHeight);

/// Makes a picture upright, of that size, with 8 bits each of blue, green, red and alpha, colours premultiplied.
FilterChain pictureChain(Orientation orientation, int width, int height);

/// Makes a frame for an encoder of one that has the right size already.
FilterChain encoderChain();

} // namespace vesk
