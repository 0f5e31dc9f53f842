#include "VeskPlatform/Apple/QuartzDisplays.hpp"

#include "VeskPlatform/Apple/QuartzGeometry.hpp"
#include "VeskPlatform/Apple/QuartzImage.hpp"

#import <CoreGraphics/CoreGraphics.h>

#include <algorithm>
#include <type_traits>

namespace vesk {

static_assert(std::is_same_v<DisplayIdentifier, CGDirectDisplayID>);

namespace {

#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
/// The one way to a picture that answers at once. The system would rather be asked for a stream of pictures; its
/// headers from macOS 15 on still offer this where the oldest system that is built for comes before that one, which
/// holds here.
CFOwned<CGImageRef> picture(CGDirectDisplayID display) { return CFOwned<CGImageRef>(CGDisplayCreateImage(display)); }
#pragma clang diagnostic pop

} // namespace

std::optional<std::size_t> QuartzDisplays::count() {
    std::uint32_t count = 0;
    if (CGGetActiveDisplayList(0, nullptr, &count) != kCGErrorSuccess) return std::nullopt;
    return count;
}

/// There may be fewer by now than there is room for.
std::optional<std::vector<DisplayIdentifier>> QuartzDisplays::list(std::size_t capacity) {
    std::vector<DisplayIdentifier> displays(capacity);
    std::uint32_t count = 0;
    if (CGGetActiveDisplayList(static_cast<std::uint32_t>(capacity), displays.data(), &count) != kCGErrorSuccess)
        return std::nullopt;
    displays.resize(std::min<std::size_t>(count, capacity));
    return displays;
}

ScreenRectangle QuartzDisplays::bounds(DisplayIdentifier display) {
    const CGRect bounds = CGDisplayBounds(display);
    if (CGRectIsNull(bounds)) return {};
    return {bounds.origin.x, bounds.origin.y, bounds.size.width, bounds.size.height};
}

std::unique_ptr<ScreenImage> QuartzDisplays::capture(DisplayIdentifier display) {
    CFOwned<CGImageRef> image = picture(display);
    return image ? std::make_unique<QuartzImage>(std::move(image)) : nullptr;
}

} // namespace vesk
