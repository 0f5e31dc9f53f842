#pragma once

#include "VeskPlatform/Linux/Desktop/PixelImage.hpp"
#include "VeskPlatform/ScreenImages.hpp"

#include <cstdlib>
#include <memory>
#include <pixman.h>

namespace vesk {

/// A canvas that pixman draws on. It takes PixelImages only. Rectangles are moved to whole pixels; a picture of another
/// size is scaled by averaging what falls on a pixel, or smoothly where it is enlarged.
class PixmanCanvas : public BitmapContext {
public:
    /// Null where there is no memory for it, or more pixels on a side than pixman can count.
    static std::unique_ptr<PixmanCanvas> create(std::size_t width, std::size_t height);

    void draw(const ScreenImage& image, const ScreenRectangle& rectangle) override;
    std::unique_ptr<ScreenImage> makeImage() override;

private:
    struct ImageRelease {
        void operator()(pixman_image_t* image) const { pixman_image_unref(image); }
    };
    using Image = std::unique_ptr<pixman_image_t, ImageRelease>;
    struct MemoryRelease {
        void operator()(std::uint32_t* memory) const { std::free(memory); }
    };
    using Pixels = std::unique_ptr<std::uint32_t, MemoryRelease>;
    /// The pixels that hold something opaque.
    class Cover {
    public:
        Cover() { pixman_region32_init(&region_); }
        ~Cover() { pixman_region32_fini(&region_); }
        Cover(const Cover&) = delete;
        Cover& operator=(const Cover&) = delete;
        pixman_region32_t* get() { return &region_; }

    private:
        pixman_region32_t region_{};
    };
    class Picture;

    PixmanCanvas(Pixels pixels, Image target, int width, int height);
    void note(const pixman_box32_t& box, bool isOpaque);

    Pixels pixels_;
    Image target_;
    int width_, height_;
    Cover cover_;
};

} // namespace vesk
