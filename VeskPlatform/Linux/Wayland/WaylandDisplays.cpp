#include "VeskPlatform/Linux/Wayland/WaylandDisplays.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace vesk {
namespace {

/// From one edge to another, in one direction.
struct Extent {
    double from = 0, to = 0;
};

using ExtentOf = Extent (*)(const ScreenRectangle& rectangle);

Extent horizontal(const ScreenRectangle& r) { return {r.x, r.x + r.width}; }
Extent vertical(const ScreenRectangle& r) { return {r.y, r.y + r.height}; }

Extent wholeExtent(const std::vector<OutputPlace>& places, ExtentOf extentOf) {
    Extent whole = extentOf(places.front().bounds);
    for (const OutputPlace& place : places) {
        const Extent extent = extentOf(place.bounds);
        whole = {std::min(whole.from, extent.from), std::max(whole.to, extent.to)};
    }
    return whole;
}

struct PixelRange {
    std::size_t first = 0, count = 0;
};

/// Where `part` of `whole` lies in a row of that many pixels. A monitor's picture may have more pixels than points, and
/// the picture of all has the same scale everywhere.
PixelRange pixelsOf(Extent part, Extent whole, std::size_t pixels) {
    const double all = static_cast<double>(pixels);
    const auto edge = [&](double at) {
        const double pixel = std::round((at - whole.from) * all / (whole.to - whole.from));
        return static_cast<std::size_t>(std::clamp(pixel, 0.0, all));
    };
    const std::size_t first = edge(part.from);
    return {first, edge(part.to) - first};
}

bool hasArea(const ScreenRectangle& rectangle) { return rectangle.width > 0 && rectangle.height > 0; }

} // namespace

WaylandDisplays::WaylandDisplays(ListOutputs outputs, TakePicture takePicture)
    : outputs_(std::move(outputs)), takePicture_(std::move(takePicture)) {}

std::optional<std::size_t> WaylandDisplays::count() { return outputs_().size(); }

std::optional<std::vector<DisplayIdentifier>> WaylandDisplays::list(std::size_t capacity) {
    std::vector<DisplayIdentifier> identifiers;
    for (const OutputPlace& place : outputs_())
        if (identifiers.size() < capacity) identifiers.push_back(place.identifier);
    return identifiers;
}

ScreenRectangle WaylandDisplays::bounds(DisplayIdentifier display) {
    const auto places = outputs_();
    const auto found = std::ranges::find(places, display, &OutputPlace::identifier);
    return found == places.end() ? ScreenRectangle{} : found->bounds;
}

std::unique_ptr<ScreenImage> WaylandDisplays::capture(DisplayIdentifier display) {
    if (!picture_ || captured_.contains(display)) {
        captured_.clear();
        places_ = outputs_();
        picture_ = takePicture_();
    }
    const auto found = std::ranges::find(places_, display, &OutputPlace::identifier);
    if (!picture_ || found == places_.end() || !hasArea(found->bounds)) return nullptr;
    captured_.insert(display);
    const PixelRange columns = pixelsOf(horizontal(found->bounds), wholeExtent(places_, horizontal), picture_->width);
    const PixelRange rows = pixelsOf(vertical(found->bounds), wholeExtent(places_, vertical), picture_->height);
    if (columns.count == 0 || rows.count == 0) return nullptr;
    return std::make_unique<PicturePart>(picture_, columns.first, rows.first, columns.count, rows.count);
}

} // namespace vesk
