#include "VeskShellCore/ReelGeometry.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>

namespace vesk {
namespace {

constexpr std::int32_t largestTimescale = std::numeric_limits<std::int32_t>::max();

bool isUsable(double length) { return length != 0 && !std::isnan(length); }

std::int64_t inTimescale(const MediaTime& time, std::int64_t timescale) {
    const long double exact = static_cast<long double>(time.value) * static_cast<long double>(timescale)
                              / static_cast<long double>(time.timescale);
    return std::llroundl(exact);
}

} // namespace

AffineTransform concatenated(const AffineTransform& first, const AffineTransform& second) {
    return {.a = first.a * second.a + first.b * second.c,
            .b = first.a * second.b + first.b * second.d,
            .c = first.c * second.a + first.d * second.c,
            .d = first.c * second.b + first.d * second.d,
            .tx = first.tx * second.a + first.ty * second.c + second.tx,
            .ty = first.tx * second.b + first.ty * second.d + second.ty};
}

MediaRectangle applied(const AffineTransform& transform, const MediaRectangle& rectangle) {
    const double right = rectangle.x + rectangle.width, bottom = rectangle.y + rectangle.height;
    std::array<double, 4> xs{}, ys{};
    const std::array<std::array<double, 2>, 4> corners{
        {{rectangle.x, rectangle.y}, {right, rectangle.y}, {rectangle.x, bottom}, {right, bottom}}};
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const auto [x, y] = corners[i];
        xs[i] = transform.a * x + transform.c * y + transform.tx;
        ys[i] = transform.b * x + transform.d * y + transform.ty;
    }
    const auto [left, rightmost] = std::ranges::minmax(xs);
    const auto [top, lowest] = std::ranges::minmax(ys);
    return {left, top, rightmost - left, lowest - top};
}

MediaRectangle letterboxed(const MediaSize& image, const MediaSize& renderSize) {
    const double scale = std::min(renderSize.width / image.width, renderSize.height / image.height);
    const double width = image.width * scale, height = image.height * scale;
    return {(renderSize.width - width) * 0.5, (renderSize.height - height) * 0.5, width, height};
}

AffineTransform aspectFitTransform(const MediaSize& naturalSize, const AffineTransform& preferred,
                                   const MediaSize& renderSize) {
    const MediaRectangle upright = applied(preferred, {0, 0, naturalSize.width, naturalSize.height});
    const double width = std::abs(upright.width), height = std::abs(upright.height);
    if (!isUsable(width) || !isUsable(height)) return {};
    const double scale = std::min(renderSize.width / width, renderSize.height / height);
    const AffineTransform toOrigin{.tx = -upright.x, .ty = -upright.y};
    const AffineTransform scaled{.a = scale, .d = scale};
    const AffineTransform toMiddle{.tx = (renderSize.width - width * scale) * 0.5,
                                   .ty = (renderSize.height - height * scale) * 0.5};
    return concatenated(concatenated(concatenated(preferred, toOrigin), scaled), toMiddle);
}

MediaTime sum(const MediaTime& first, const MediaTime& second) {
    const std::int64_t common = std::lcm(std::int64_t{first.timescale}, std::int64_t{second.timescale});
    const std::int32_t timescale = common <= largestTimescale ? static_cast<std::int32_t>(common) : largestTimescale;
    return {inTimescale(first, timescale) + inTimescale(second, timescale), timescale};
}

double seconds(const MediaTime& time) { return static_cast<double>(time.value) / time.timescale; }

} // namespace vesk
