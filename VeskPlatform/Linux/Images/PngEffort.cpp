#include "VeskPlatform/Linux/Images/PngEffort.hpp"

#include <algorithm>
#include <png.h>
#include <span>
#include <zlib.h>

namespace vesk {

namespace {

constexpr std::size_t sampledRows = 32;

/// Of the sampled pixels, how many are like their left neighbour, between 0 and 1.
double evenness(const PixelImage& image) {
    const std::size_t step = std::max<std::size_t>(image.height() / sampledRows, 1);
    std::size_t even = 0, all = 0;
    for (std::size_t y = 0; y < image.height(); y += step) {
        const std::span row(image.pixels() + y * image.stride(), image.width());
        for (std::size_t x = 1; x < row.size(); ++x) even += row[x] == row[x - 1] ? 1 : 0;
        all += row.size() - 1;
    }
    return all == 0 ? 1 : static_cast<double>(even) / static_cast<double>(all);
}

} // namespace

PngEffort pngEffort(const PixelImage& image) {
    if (evenness(image) < 0.5) return {1, Z_RLE, PNG_FILTER_AVG};
    return {2, Z_DEFAULT_STRATEGY, PNG_FILTER_SUB};
}

} // namespace vesk
