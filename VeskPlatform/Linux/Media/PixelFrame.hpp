#pragma once

#include "VeskPlatform/Linux/Media/FfmpegObjects.hpp"
#include "VeskPlatform/MediaFramework.hpp"

namespace vesk {

/// A frame in memory with 8 bits each of blue, green, red and alpha. It takes StillImages.
class PixelFrame : public PixelBuffer {
public:
    /// Throws FfmpegError or std::bad_alloc where there is no memory.
    PixelFrame(std::size_t width, std::size_t height);

    bool lockBaseAddress() override { return frame_->data[0] != nullptr; }
    void unlockBaseAddress() override {}
    std::unique_ptr<FrameContext> makeContext() override;
    const AVFrame& frame() const { return *frame_; }

private:
    FramePointer frame_;
};

} // namespace vesk
