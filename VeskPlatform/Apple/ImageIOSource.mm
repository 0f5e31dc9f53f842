#import "VeskPlatform/Apple/ImageIOSource.hpp"

#import "VeskPlatform/Apple/FoundationFileItems.hpp"

namespace vesk {
namespace {

NSDictionary<NSString*, id>* thumbnailOptions(std::size_t maximumPixelSize) {
    return @{
        (__bridge NSString*)kCGImageSourceCreateThumbnailFromImageIfAbsent : @YES,
        (__bridge NSString*)kCGImageSourceCreateThumbnailWithTransform : @YES,
        (__bridge NSString*)kCGImageSourceThumbnailMaxPixelSize : @(maximumPixelSize),
    };
}

} // namespace

std::unique_ptr<ImageSource> ImageIOSource::open(const std::string& path) {
    NSURL* url = usableFileUrl(path);
    CFOwned<CGImageSourceRef> source(CGImageSourceCreateWithURL((__bridge CFURLRef)url, nullptr));
    if (!source) return nullptr;
    return std::unique_ptr<ImageSource>(new ImageIOSource(std::move(source)));
}

std::unique_ptr<MediaImage> ImageIOSource::makeThumbnail(std::size_t maximumPixelSize) {
    NSDictionary<NSString*, id>* options = thumbnailOptions(maximumPixelSize);
    CFOwned<CGImageRef> image(CGImageSourceCreateThumbnailAtIndex(source_.get(), 0, (__bridge CFDictionaryRef)options));
    return image ? std::make_unique<QuartzMediaImage>(std::move(image)) : nullptr;
}

} // namespace vesk
