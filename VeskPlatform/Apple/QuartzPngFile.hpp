#pragma once

#include "VeskPlatform/Apple/CoreFoundationReference.hpp"
#include "VeskPlatform/ScreenImages.hpp"

#import <ImageIO/ImageIO.h>

#include <utility>

namespace vesk {

/// A PNG file that Image I/O writes. It takes QuartzImages only.
class QuartzPngFile : public ImageDestination {
public:
    /// Null where there can be no file of that path. Throws ErrorRecord for a path that is no UTF-8.
    static std::unique_ptr<QuartzPngFile> create(const std::string& path);

    bool finalize(const ScreenImage& image) override;

private:
    explicit QuartzPngFile(CFOwned<CGImageDestinationRef> destination) : destination_(std::move(destination)) {}

    CFOwned<CGImageDestinationRef> destination_;
};

} // namespace vesk
