#include "VeskPlatform/Linux/Media/PixelFrame.hpp"

#include "VeskPlatform/Linux/Media/FramePlacer.hpp"
#include "VeskPlatform/Linux/Media/StillImage.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace vesk {
namespace {

constexpr std::size_t channels = 4;

/// The whole pixels that a rectangle comes closest to, within a frame.
PixelRectangle wholePixels(const MediaRectangle& rectangle, int width, int height) {
    const auto place = [](double value, int most) {
        return static_cast<int>(std::clamp(std::round(value), 0.0, static_cast<double>(most)));
    };
    const int left = place(rectangle.x, width), top = place(rectangle.y, height);
    const int right = place(rectangle.x + rectangle.width, width);
    const int bottom = place(rectangle.y + rectangle.height, height);
    return {left, top, right - left, bottom - top};
}

std::uint8_t* rowOf(const AVFrame& frame, int x, int y) {
    return frame.data[0] + std::ptrdiff_t{y} * frame.linesize[0] + std::ptrdiff_t{x} * std::ptrdiff_t{channels};
}

/// Premultiplied colours over what is there (Porter and Duff's "over").
void blendRow(std::uint8_t* ground, const std::uint8_t* colours, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels * channels; i += channels) {
        const unsigned through = 255U - colours[i + 3];
        if (through == 0) {
            std::memcpy(ground + i, colours + i, channels);
            continue;
        }
        for (std::size_t channel = i; channel < i + channels; ++channel)
            ground[channel] =
                static_cast<std::uint8_t>(std::min(255U, colours[channel] + (ground[channel] * through + 127U) / 255U));
    }
}

class PixelFrameContext : public FrameContext {
public:
    explicit PixelFrameContext(AVFrame& frame) : frame_(frame) {}

    void fill(const MediaRectangle& rectangle, double gray) override {
        const PixelRectangle pixels = wholePixels(rectangle, frame_.width, frame_.height);
        const auto level = static_cast<std::uint8_t>(std::lround(std::clamp(gray, 0.0, 1.0) * 255));
        for (int y = pixels.y; y < pixels.y + pixels.height; ++y)
            for (int x = pixels.x; x < pixels.x + pixels.width; ++x) {
                std::uint8_t* pixel = rowOf(frame_, x, y);
                std::fill_n(pixel, channels - 1, level);
                pixel[channels - 1] = 255;
            }
    }

    void draw(const MediaImage& image, const MediaRectangle& rectangle) override {
        const auto& still = dynamic_cast<const StillImage&>(image);
        const PixelRectangle pixels = wholePixels(rectangle, frame_.width, frame_.height);
        if (pixels.width == 0 || pixels.height == 0) return;
        FramePlacer placer(pictureChain(still.orientation(), pixels.width, pixels.height));
        const FramePointer scaled = placer.placed(still.stored());
        for (int y = 0; y < pixels.height; ++y)
            blendRow(rowOf(frame_, pixels.x, pixels.y + y), rowOf(*scaled, 0, y),
                     static_cast<std::size_t>(pixels.width));
    }

private:
    AVFrame& frame_;
};

} // namespace

PixelFrame::PixelFrame(std::size_t width, std::size_t height)
    : frame_(makePicture(static_cast<int>(width), static_cast<int>(height), AV_PIX_FMT_BGRA)) {}

std::unique_ptr<FrameContext> PixelFrame::makeContext() { return std::make_unique<PixelFrameContext>(*frame_); }

} // namespace vesk
