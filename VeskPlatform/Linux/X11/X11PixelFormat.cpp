#include "VeskPlatform/Linux/X11/X11PixelFormat.hpp"

#include <bit>

namespace vesk {

namespace {

constexpr std::uint32_t opaque = 0xFF000000;

const xcb_visualtype_t* rootVisual(const xcb_screen_t& screen) {
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0; xcb_depth_next(&depths))
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0; xcb_visualtype_next(&visuals))
            if (visuals.data->visual_id == screen.root_visual) return visuals.data;
    return nullptr;
}

/// One colour of a pixel, widened or narrowed to eight bits.
class Channel {
public:
    explicit Channel(std::uint32_t mask)
        : mask_(mask), shift_(std::countr_zero(mask)), largest_(mask == 0 ? 1 : mask >> shift_) {}
    std::uint32_t of(std::uint32_t pixel) const {
        const std::uint64_t value = (pixel & mask_) >> shift_;
        return static_cast<std::uint32_t>((value * 255 + largest_ / 2) / largest_);
    }

private:
    std::uint32_t mask_;
    int shift_;
    std::uint32_t largest_;
};

std::uint32_t pixelAt(const std::uint8_t* bytes, int count, bool isMostSignificantFirst) {
    std::uint32_t pixel = 0;
    for (int i = 0; i < count; ++i) {
        const int place = isMostSignificantFirst ? count - 1 - i : i;
        pixel |= static_cast<std::uint32_t>(bytes[i]) << (8 * place);
    }
    return pixel;
}

} // namespace

std::size_t X11PixelFormat::rowLength(std::size_t width) const {
    const auto pad = static_cast<std::size_t>(scanlinePad), bits = width * static_cast<std::size_t>(bitsPerPixel);
    return (bits + pad - 1) / pad * pad / 8;
}

bool X11PixelFormat::isNative() const {
    return bitsPerPixel == 32 && scanlinePad <= 32 && redMask == 0xFF0000 && greenMask == 0xFF00 && blueMask == 0xFF
           && isMostSignificantFirst == (std::endian::native == std::endian::big);
}

std::optional<X11PixelFormat> rootPixelFormat(const xcb_setup_t& setup, const xcb_screen_t& screen) {
    const xcb_visualtype_t* const visual = rootVisual(screen);
    if (visual == nullptr
        || (visual->_class != XCB_VISUAL_CLASS_TRUE_COLOR && visual->_class != XCB_VISUAL_CLASS_DIRECT_COLOR))
        return std::nullopt;
    for (auto formats = xcb_setup_pixmap_formats_iterator(&setup); formats.rem > 0; xcb_format_next(&formats)) {
        const xcb_format_t& format = *formats.data;
        if (format.depth != screen.root_depth || format.bits_per_pixel < 16 || format.scanline_pad == 0) continue;
        return X11PixelFormat{
            format.bits_per_pixel, format.scanline_pad, setup.image_byte_order == XCB_IMAGE_ORDER_MSB_FIRST,
            visual->red_mask,      visual->green_mask,  visual->blue_mask};
    }
    return std::nullopt;
}

std::vector<std::uint32_t> convertedPixels(const X11PixelFormat& format, const std::uint8_t* bytes, std::size_t width,
                                           std::size_t height) {
    const Channel red(format.redMask), green(format.greenMask), blue(format.blueMask);
    const int size = format.bitsPerPixel / 8;
    std::vector<std::uint32_t> pixels;
    pixels.reserve(width * height);
    for (std::size_t y = 0; y < height; ++y) {
        const std::uint8_t* place = bytes + y * format.rowLength(width);
        for (std::size_t x = 0; x < width; ++x, place += size) {
            const std::uint32_t pixel = pixelAt(place, size, format.isMostSignificantFirst);
            pixels.push_back(opaque | red.of(pixel) << 16 | green.of(pixel) << 8 | blue.of(pixel));
        }
    }
    return pixels;
}

} // namespace vesk
