#include "VeskPlatform/Apple/QuartzPngFile.hpp"

#include "VeskPlatform/Apple/FoundationValues.hpp"
#include "VeskPlatform/Apple/QuartzImage.hpp"

#import <Foundation/Foundation.h>
#import <UniformTypeIdentifiers/UniformTypeIdentifiers.h>

namespace vesk {

std::unique_ptr<QuartzPngFile> QuartzPngFile::create(const std::string& path) {
    CFOwned<CGImageDestinationRef> destination(CGImageDestinationCreateWithURL(
        (__bridge CFURLRef)fileUrl(path), (__bridge CFStringRef)UTTypePNG.identifier, 1, nullptr));
    if (!destination) return nullptr;
    return std::unique_ptr<QuartzPngFile>(new QuartzPngFile(std::move(destination)));
}

bool QuartzPngFile::finalize(const ScreenImage& image) {
    CGImageDestinationAddImage(destination_.get(), dynamic_cast<const QuartzImage&>(image).get(), nullptr);
    return CGImageDestinationFinalize(destination_.get());
}

} // namespace vesk
