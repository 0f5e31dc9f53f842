#pragma once

#include "VeskPlatform/Linux/Desktop/PixelImage.hpp"

namespace vesk {

/// How a picture is packed; the numbers are those of zlib and libpng.
struct PngEffort {
    int level = 0, strategy = 0, filters = 0;

    bool operator==(const PngEffort&) const = default;
};

/// The packing that is fast for a picture and not much larger than the best: one for photographs, whose neighbouring
/// pixels differ, and one for drawn content, which repeats itself. Decides by a sample of the rows.
PngEffort pngEffort(const PixelImage& image);

} // namespace vesk
