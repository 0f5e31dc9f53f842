#include "VeskPlatform/Apple/AVFoundationMedia.hpp"

#import "VeskPlatform/Apple/AVFoundationAsset.hpp"
#import "VeskPlatform/Apple/AVFoundationClipWriter.hpp"
#import "VeskPlatform/Apple/AVFoundationComposition.hpp"
#import "VeskPlatform/Apple/AVFoundationExport.hpp"
#import "VeskPlatform/Apple/CoreVideoPixelBuffer.hpp"
#import "VeskPlatform/Apple/ImageIOSource.hpp"

namespace vesk {

std::unique_ptr<ImageSource> AVFoundationMedia::openImage(const std::string& path) { return ImageIOSource::open(path); }

std::shared_ptr<PixelBuffer> AVFoundationMedia::makePixelBuffer(std::size_t width, std::size_t height) {
    return CoreVideoPixelBuffer::create(width, height);
}

std::unique_ptr<ClipWriter> AVFoundationMedia::makeClipWriter(const std::string& path) {
    return std::make_unique<AVFoundationClipWriter>(path);
}

std::shared_ptr<MediaAsset> AVFoundationMedia::openAsset(const std::string& path) {
    return std::make_shared<AVFoundationAsset>(path);
}

std::unique_ptr<MediaComposition> AVFoundationMedia::makeComposition() {
    return std::make_unique<AVFoundationComposition>();
}

std::unique_ptr<ExportSession> AVFoundationMedia::makeExportSession(MediaComposition& composition) {
    return AVFoundationExport::create(dynamic_cast<const AVFoundationComposition&>(composition));
}

} // namespace vesk
