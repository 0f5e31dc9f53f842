#pragma once

#import "VeskPlatform/Apple/CoreFoundationReference.hpp"

#include "VeskPlatform/MediaFramework.hpp"

#import <CoreGraphics/CoreGraphics.h>
#import <ImageIO/ImageIO.h>

#include <utility>

namespace vesk {

/// A decoded picture of Core Graphics.
class QuartzMediaImage : public MediaImage {
public:
    /// `image` is not empty.
    explicit QuartzMediaImage(CFOwned<CGImageRef> image) : image_(std::move(image)) {}

    CGImageRef get() const { return image_.get(); }
    std::size_t width() const override { return CGImageGetWidth(image_.get()); }
    std::size_t height() const override { return CGImageGetHeight(image_.get()); }

private:
    CFOwned<CGImageRef> image_;
};

/// A file of pictures through Image I/O.
class ImageIOSource : public ImageSource {
public:
    /// Null where the file is no picture.
    static std::unique_ptr<ImageSource> open(const std::string& path);

    std::unique_ptr<MediaImage> makeThumbnail(std::size_t maximumPixelSize) override;

private:
    explicit ImageIOSource(CFOwned<CGImageSourceRef> source) : source_(std::move(source)) {}

    CFOwned<CGImageSourceRef> source_;
};

} // namespace vesk
