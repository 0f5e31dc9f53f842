#include "VeskPlatform/Linux/Images/PixmanCanvas.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vesk {

namespace {

constexpr std::size_t longestSide = 32767;

/// Pixman's rectangles end before their second corner.
std::optional<pixman_box32_t> wholePixels(const ScreenRectangle& rectangle) {
    const double left = std::round(rectangle.x), top = std::round(rectangle.y),
                 right = std::round(rectangle.x + rectangle.width), bottom = std::round(rectangle.y + rectangle.height);
    const auto isCountable = [](double edge) { return std::abs(edge) <= double(longestSide); };
    if (!isCountable(left) || !isCountable(top) || !isCountable(right) || !isCountable(bottom)) return std::nullopt;
    const pixman_box32_t box{int(left), int(top), int(right), int(bottom)};
    return box.x1 < box.x2 && box.y1 < box.y2 ? std::optional(box) : std::nullopt;
}

/// Pixels of the source for one of the target. Its edges are continued, or they would be mixed with nothing.
void scale(pixman_image_t& source, double horizontal, double vertical) {
    pixman_transform_t transform;
    pixman_transform_init_scale(&transform, pixman_double_to_fixed(horizontal), pixman_double_to_fixed(vertical));
    pixman_image_set_transform(&source, &transform);
    pixman_image_set_repeat(&source, PIXMAN_REPEAT_PAD);
    int count = 0;
    const std::unique_ptr<pixman_fixed_t, decltype(&std::free)> parameters(
        pixman_filter_create_separable_convolution(&count, pixman_double_to_fixed(horizontal),
                                                   pixman_double_to_fixed(vertical), PIXMAN_KERNEL_LINEAR,
                                                   PIXMAN_KERNEL_LINEAR, PIXMAN_KERNEL_BOX, PIXMAN_KERNEL_BOX, 4, 4),
        &std::free);
    pixman_image_set_filter(&source, PIXMAN_FILTER_SEPARABLE_CONVOLUTION, parameters.get(), count);
}

} // namespace

/// A canvas that is drawn.
class PixmanCanvas::Picture : public PixelImage {
public:
    Picture(Pixels pixels, int width, int height, bool isOpaque)
        : pixels_(std::move(pixels)), width_(static_cast<std::size_t>(width)),
          height_(static_cast<std::size_t>(height)), isOpaque_(isOpaque) {}
    std::size_t width() const override { return width_; }
    std::size_t height() const override { return height_; }
    const std::uint32_t* pixels() const override { return pixels_.get(); }
    std::size_t stride() const override { return width_; }
    bool isOpaque() const override { return isOpaque_; }

private:
    Pixels pixels_;
    std::size_t width_, height_;
    bool isOpaque_;
};

std::unique_ptr<PixmanCanvas> PixmanCanvas::create(std::size_t width, std::size_t height) {
    if (width == 0 || height == 0 || width > longestSide || height > longestSide) return nullptr;
    Pixels pixels(static_cast<std::uint32_t*>(std::calloc(width * height, sizeof(std::uint32_t))));
    if (!pixels) return nullptr;
    const int columns = static_cast<int>(width), rows = static_cast<int>(height);
    Image target(pixman_image_create_bits(PIXMAN_a8r8g8b8, columns, rows, pixels.get(), columns * 4));
    if (!target) return nullptr;
    return std::unique_ptr<PixmanCanvas>(new PixmanCanvas(std::move(pixels), std::move(target), columns, rows));
}

PixmanCanvas::PixmanCanvas(Pixels pixels, Image target, int width, int height)
    : pixels_(std::move(pixels)), target_(std::move(target)), width_(width), height_(height) {}

void PixmanCanvas::note(const pixman_box32_t& box, bool isOpaque) {
    pixman_region32_t own;
    pixman_region32_init_with_extents(&own, &box);
    if (isOpaque)
        pixman_region32_union(cover_.get(), cover_.get(), &own);
    else
        pixman_region32_subtract(cover_.get(), cover_.get(), &own);
    pixman_region32_fini(&own);
}

void PixmanCanvas::draw(const ScreenImage& image, const ScreenRectangle& rectangle) {
    const auto& picture = dynamic_cast<const PixelImage&>(image);
    const auto box = wholePixels(rectangle);
    if (!box || !pixels_ || picture.width() == 0 || picture.height() == 0 || picture.width() > longestSide
        || picture.height() > longestSide)
        return;
    const int width = static_cast<int>(picture.width()), height = static_cast<int>(picture.height());
    const Image source(pixman_image_create_bits(picture.isOpaque() ? PIXMAN_x8r8g8b8 : PIXMAN_a8r8g8b8, width, height,
                                                const_cast<std::uint32_t*>(picture.pixels()), // only read
                                                static_cast<int>(picture.stride() * 4)));
    if (!source) return;
    const int columns = box->x2 - box->x1, rows = box->y2 - box->y1;
    if (columns != width || rows != height) scale(*source, double(width) / columns, double(height) / rows);
    pixman_image_composite32(PIXMAN_OP_SRC, source.get(), nullptr, target_.get(), 0, 0, 0, 0, box->x1, box->y1, columns,
                             rows);
    note(*box, picture.isOpaque());
}

std::unique_ptr<ScreenImage> PixmanCanvas::makeImage() {
    if (!pixels_) return nullptr;
    pixman_box32_t whole{0, 0, width_, height_};
    const bool isOpaque = pixman_region32_contains_rectangle(cover_.get(), &whole) == PIXMAN_REGION_IN;
    target_.reset();
    return std::make_unique<Picture>(std::move(pixels_), width_, height_, isOpaque);
}

} // namespace vesk
