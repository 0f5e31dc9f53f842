#pragma once

#include <cstdint>

namespace vesk {

struct MediaSize {
    double width = 0, height = 0;

    bool operator==(const MediaSize&) const = default;
};

struct MediaRectangle {
    double x = 0, y = 0, width = 0, height = 0;

    bool operator==(const MediaRectangle&) const = default;
};

/// Takes a point (x, y) to (a·x + c·y + tx, b·x + d·y + ty).
struct AffineTransform {
    double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;

    bool operator==(const AffineTransform&) const = default;
};

/// A time of `value / timescale` seconds; the timescale is positive.
struct MediaTime {
    std::int64_t value = 0;
    std::int32_t timescale = 1;

    bool operator==(const MediaTime&) const = default;
};

} // namespace vesk
