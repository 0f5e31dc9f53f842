#include "VeskPlatform/Linux/Wayland/Picture.hpp"

#include <bit>
#include <png.h>
#include <utility>

namespace vesk {
namespace {

constexpr std::size_t mostPixels = std::size_t{1} << 28;

/// Reads a file by libpng's simplified interface, which reports by return values.
class PngFile {
public:
    explicit PngFile(const std::string& path) {
        image_.version = PNG_IMAGE_VERSION;
        isOpen_ = png_image_begin_read_from_file(&image_, path.c_str()) != 0;
    }
    ~PngFile() { png_image_free(&image_); }
    PngFile(const PngFile&) = delete;
    PngFile& operator=(const PngFile&) = delete;

    bool isReadable() const { return isOpen_ && std::size_t{image_.width} * image_.height <= mostPixels; }
    bool read(Picture& picture) {
        picture.width = image_.width;
        picture.height = image_.height;
        picture.isOpaque = (image_.format & PNG_FORMAT_FLAG_ALPHA) == 0;
        picture.pixels.resize(picture.width * picture.height);
        image_.format = std::endian::native == std::endian::little ? PNG_FORMAT_BGRA : PNG_FORMAT_ARGB;
        return png_image_finish_read(&image_, nullptr, picture.pixels.data(), 0, nullptr) != 0;
    }

private:
    png_image image_{};
    bool isOpen_ = false;
};

std::uint32_t premultiplied(std::uint32_t pixel) {
    const std::uint32_t alpha = pixel >> 24;
    std::uint32_t result = alpha << 24;
    for (const unsigned shift : {0U, 8U, 16U}) {
        const std::uint32_t color = (pixel >> shift) & 0xFFU;
        result |= (color * alpha + 127) / 255 << shift;
    }
    return result;
}

} // namespace

std::shared_ptr<const Picture> readPng(const std::string& path) {
    PngFile file(path);
    if (!file.isReadable()) return nullptr;
    auto picture = std::make_shared<Picture>();
    if (!file.read(*picture)) return nullptr;
    if (!picture->isOpaque)
        for (std::uint32_t& pixel : picture->pixels) pixel = premultiplied(pixel);
    return picture;
}

PicturePart::PicturePart(std::shared_ptr<const Picture> whole, std::size_t left, std::size_t top, std::size_t width,
                         std::size_t height)
    : whole_(std::move(whole)), first_(whole_->pixels.data() + top * whole_->width + left), width_(width),
      height_(height) {}

} // namespace vesk
