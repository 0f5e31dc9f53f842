#pragma once

#include "VeskPlatform/Apple/CoreFoundationReference.hpp"
#include "VeskPlatform/Displays.hpp"

#import <CoreGraphics/CoreGraphics.h>

#include <utility>

namespace vesk {

/// A Core Graphics image. Both QuartzDisplays and QuartzScreenImages make them, and the latter takes no other.
class QuartzImage : public ScreenImage {
public:
    /// `image` is not empty.
    explicit QuartzImage(CFOwned<CGImageRef> image) : image_(std::move(image)) {}

    CGImageRef get() const { return image_.get(); }
    std::size_t width() const override { return CGImageGetWidth(image_.get()); }
    std::size_t height() const override { return CGImageGetHeight(image_.get()); }

private:
    CFOwned<CGImageRef> image_;
};

} // namespace vesk
