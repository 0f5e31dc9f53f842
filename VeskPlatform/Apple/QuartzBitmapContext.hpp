#pragma once

#include "VeskPlatform/Apple/CoreFoundationReference.hpp"
#include "VeskPlatform/ScreenImages.hpp"

#import <CoreGraphics/CoreGraphics.h>

#include <utility>

namespace vesk {

/// A bitmap of 32-bit little-endian pixels with premultiplied alpha first, which begins transparent. Core Graphics
/// counts from the bottom, so the context is turned over once, and each picture is turned back where it lies.
class QuartzBitmapContext : public BitmapContext {
public:
    /// Null where there is no memory for it.
    static std::unique_ptr<QuartzBitmapContext> create(std::size_t width, std::size_t height);

    void draw(const ScreenImage& image, const ScreenRectangle& rectangle) override;
    std::unique_ptr<ScreenImage> makeImage() override;

private:
    explicit QuartzBitmapContext(CFOwned<CGContextRef> context) : context_(std::move(context)) {}

    CFOwned<CGContextRef> context_;
};

} // namespace vesk
