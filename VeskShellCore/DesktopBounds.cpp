#include "VeskShellCore/DesktopBounds.hpp"

#include "VeskShellCore/NativeControlError.hpp"

#include <algorithm>

namespace vesk {
namespace {

ScreenRectangle united(const ScreenRectangle& a, const ScreenRectangle& b) {
    const double x = std::min(a.x, b.x), y = std::min(a.y, b.y);
    return {.x = x,
            .y = y,
            .width = std::max(a.x + a.width, b.x + b.width) - x,
            .height = std::max(a.y + a.height, b.y + b.height) - y};
}

} // namespace

std::optional<ScreenRectangle> unionOf(const std::vector<ScreenRectangle>& rectangles) {
    std::optional<ScreenRectangle> all;
    for (const ScreenRectangle& rectangle : rectangles) all = all ? united(*all, rectangle) : rectangle;
    return all;
}

ScreenRectangle currentDesktopBounds(Displays& displays) {
    const auto count = displays.count();
    if (!count) throw NativeControlError(86, "Unable to enumerate active displays.");
    const auto active = displays.list(*count);
    if (!active) throw NativeControlError(87, "Unable to load active display bounds.");
    std::vector<ScreenRectangle> places;
    for (const DisplayIdentifier display : *active) places.push_back(displays.bounds(display));
    const auto desktop = unionOf(places);
    if (!desktop || !(desktop->width > 0) || !(desktop->height > 0))
        throw NativeControlError(88, "Desktop bounds are unavailable for computer control.");
    return *desktop;
}

} // namespace vesk
