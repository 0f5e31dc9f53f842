#include "VeskPlatform/Linux/Images/PngFile.hpp"

#include "VeskPlatform/Linux/Desktop/PixelImage.hpp"
#include "VeskPlatform/Linux/Images/PngEffort.hpp"

#include <bit>
#include <cerrno>
#include <fcntl.h>
#include <png.h>
#include <unistd.h>
#include <utility>
#include <vector>
#include <zlib.h>

namespace vesk {

namespace {

void writeBytes(png_structp png, png_bytep bytes, std::size_t count) {
    const int file = *static_cast<const int*>(png_get_io_ptr(png));
    while (count > 0) {
        const ssize_t written = ::write(file, bytes, count);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) png_error(png, "write");
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
}

void flushNothing(png_structp) {}
[[noreturn]] void fail(png_structp png, png_const_charp) { png_longjmp(png, 1); }
void ignore(png_structp, png_const_charp) {}

/// The library's two objects.
class PngWriter {
public:
    PngWriter() : png(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, &fail, &ignore)) {
        if (png != nullptr) info = png_create_info_struct(png);
    }
    ~PngWriter() { png_destroy_write_struct(&png, &info); }
    PngWriter(const PngWriter&) = delete;
    PngWriter& operator=(const PngWriter&) = delete;

    png_structp png = nullptr;
    png_infop info = nullptr;
};

/// Colours as they are without the alpha that they were multiplied by, in the order of the file.
void unmultiply(const std::uint32_t* pixels, std::vector<png_byte>& row) {
    auto target = row.begin();
    for (std::size_t x = 0; x < row.size() / 4; ++x) {
        const std::uint32_t pixel = pixels[x], alpha = pixel >> 24U;
        for (const unsigned int shift : {16U, 8U, 0U}) {
            const std::uint32_t colour = pixel >> shift & 0xFFU;
            const std::uint32_t plain = alpha == 0 ? 0 : (colour * 255 + alpha / 2) / alpha;
            *target++ = static_cast<png_byte>(plain > 255 ? 255 : plain);
        }
        *target++ = static_cast<png_byte>(alpha);
    }
}

void writeHeader(png_structp png, png_infop info, const PixelImage& image, const PngEffort& effort) {
    png_set_compression_level(png, effort.level);
    png_set_compression_strategy(png, effort.strategy);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, effort.filters);
    png_set_compression_buffer_size(png,
                                    std::size_t{1} << 17U); // one block of data, and one write, for that many bytes
    png_set_IHDR(png, info, static_cast<png_uint_32>(image.width()), static_cast<png_uint_32>(image.height()), 8,
                 image.isOpaque() ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_RGB_ALPHA, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
}

/// The library takes opaque rows as they lie in memory and leaves the fourth byte out.
void writeOpaqueRows(png_structp png, const PixelImage& image) {
    constexpr bool isLittle = std::endian::native == std::endian::little;
    if (isLittle) png_set_bgr(png);
    png_set_filler(png, 0, isLittle ? PNG_FILLER_AFTER : PNG_FILLER_BEFORE);
    for (std::size_t y = 0; y < image.height(); ++y)
        png_write_row(png, reinterpret_cast<png_const_bytep>(image.pixels() + y * image.stride()));
}

void writeClearRows(png_structp png, const PixelImage& image, std::vector<png_byte>& row) {
    for (std::size_t y = 0; y < image.height(); ++y) {
        unmultiply(image.pixels() + y * image.stride(), row);
        png_write_row(png, row.data());
    }
}

/// A failure of the library leaps back here over its own frames: nothing that needs an end may live in them.
bool writePicture(const PngWriter& writer, const PixelImage& image, const PngEffort& effort, std::vector<png_byte>& row,
                  int file) {
    if (setjmp(png_jmpbuf(writer.png)) != 0) return false; // NOLINT(cert-err52-cpp): the library's way
    png_set_write_fn(writer.png, &file, &writeBytes, &flushNothing);
    writeHeader(writer.png, writer.info, image, effort);
    if (image.isOpaque())
        writeOpaqueRows(writer.png, image);
    else
        writeClearRows(writer.png, image, row);
    png_write_end(writer.png, nullptr);
    return true;
}

} // namespace

std::unique_ptr<PngFile> PngFile::create(const std::string& path) {
    // A pipe is not waited for until somebody reads it, but then it is written to like a file.
    FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666));
    if (file) ::fcntl(file.get(), F_SETFL, O_WRONLY);
    return file ? std::unique_ptr<PngFile>(new PngFile(std::move(file))) : nullptr;
}

bool PngFile::finalize(const ScreenImage& image) {
    const auto& picture = dynamic_cast<const PixelImage&>(image);
    const PngWriter writer;
    if (!file_ || writer.png == nullptr || writer.info == nullptr) return false;
    std::vector<png_byte> row(picture.isOpaque() ? 0 : picture.width() * 4);
    const bool isWritten = writePicture(writer, picture, pngEffort(picture), row, file_.get());
    return ::close(file_.release()) == 0 && isWritten;
}

} // namespace vesk
