#pragma once

#import "VeskPlatform/Apple/CoreFoundationReference.hpp"

#include "VeskPlatform/MediaFramework.hpp"

#import <CoreVideo/CoreVideo.h>
#import <Foundation/Foundation.h>

#include <utility>

namespace vesk {

/// The format of the frames: 32 bits a pixel, blue, green, red and alpha.
inline constexpr OSType framePixelFormat = 0x42475241;
static_assert(framePixelFormat == kCVPixelFormatType_32BGRA);

/// What makes a buffer one that images can be made of and drawn into.
NSDictionary<NSString*, id>* _Nonnull imageCompatibility();

/// A frame in a Core Video buffer. It takes QuartzMediaImages.
class CoreVideoPixelBuffer : public PixelBuffer {
public:
    /// Null where there is no memory for it.
    static std::shared_ptr<PixelBuffer> create(std::size_t width, std::size_t height);

    bool lockBaseAddress() override;
    void unlockBaseAddress() override;
    std::unique_ptr<FrameContext> makeContext() override;
    CVPixelBufferRef _Nonnull get() const { return buffer_.get(); }

private:
    explicit CoreVideoPixelBuffer(CFOwned<CVPixelBufferRef> buffer) : buffer_(std::move(buffer)) {}

    CFOwned<CVPixelBufferRef> buffer_;
};

} // namespace vesk
