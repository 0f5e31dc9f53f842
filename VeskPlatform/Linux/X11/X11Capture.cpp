#include "VeskPlatform/Linux/X11/X11Capture.hpp"

#include "VeskPlatform/Linux/X11/X11PixelFormat.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"

#include <algorithm>
#include <optional>
#include <span>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>
#include <vector>
#include <xcb/shm.h>

namespace vesk {

namespace {

/// Memory that the server writes into.
class SharedMemory {
public:
    SharedMemory() = default;
    SharedMemory(void* address, std::size_t size) : address_(address), size_(size) {}
    SharedMemory(SharedMemory&& other) noexcept
        : address_(std::exchange(other.address_, nullptr)), size_(other.size_) {}
    SharedMemory& operator=(SharedMemory&&) = delete;
    ~SharedMemory() {
        if (address_ != nullptr) ::munmap(address_, size_);
    }
    const std::uint8_t* bytes() const { return static_cast<const std::uint8_t*>(address_); }

private:
    void* address_ = nullptr;
    std::size_t size_ = 0;
};

class SharedImage : public PixelImage {
public:
    SharedImage(SharedMemory memory, std::size_t width, std::size_t height)
        : memory_(std::move(memory)), width_(width), height_(height) {}
    std::size_t width() const override { return width_; }
    std::size_t height() const override { return height_; }
    const std::uint32_t* pixels() const override { return reinterpret_cast<const std::uint32_t*>(memory_.bytes()); }
    std::size_t stride() const override { return width_; }
    bool isOpaque() const override { return true; }

private:
    SharedMemory memory_;
    std::size_t width_, height_;
};

class VectorImage : public PixelImage {
public:
    VectorImage(std::vector<std::uint32_t> pixels, std::size_t width, std::size_t height, bool isOpaque)
        : pixels_(std::move(pixels)), width_(width), height_(height), isOpaque_(isOpaque) {}
    std::size_t width() const override { return width_; }
    std::size_t height() const override { return height_; }
    const std::uint32_t* pixels() const override { return pixels_.data(); }
    std::size_t stride() const override { return width_; }
    bool isOpaque() const override { return isOpaque_; }

private:
    std::vector<std::uint32_t> pixels_;
    std::size_t width_, height_;
    bool isOpaque_;
};

std::size_t sizeOf(int length) { return static_cast<std::size_t>(length); }

bool takesDescriptors(X11Connection& connection) {
    if (!connection.isLocal()) return false;
    const auto* const extension = xcb_get_extension_data(connection.get(), &xcb_shm_id);
    if (extension == nullptr || extension->present == 0) return false;
    const auto version = connection.answer<xcb_shm_query_version_reply_t>(xcb_shm_query_version(connection.get()));
    return version && (version->major_version > 1 || version->minor_version >= 2);
}

/// The pixels in the server's format; none where it cannot write into our memory.
std::optional<SharedMemory> readShared(X11Connection& connection, const ScreenArea& area, std::size_t size) {
    if (!takesDescriptors(connection)) return std::nullopt;
    FileDescriptor file(::memfd_create("vesk-screen", MFD_CLOEXEC));
    if (!file || ::ftruncate(file.get(), static_cast<off_t>(size)) != 0) return std::nullopt;
    void* const address = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, file.get(), 0);
    if (address == MAP_FAILED) return std::nullopt;
    SharedMemory memory(address, size);
    const xcb_shm_seg_t segment = xcb_generate_id(connection.get());
    const auto attached = xcb_shm_attach_fd_checked(connection.get(), segment, file.release(), 0); // xcb closes it
    const auto written = connection.answer<xcb_shm_get_image_reply_t>(
        xcb_shm_get_image(connection.get(), connection.root(), static_cast<std::int16_t>(area.x),
                          static_cast<std::int16_t>(area.y), static_cast<std::uint16_t>(area.width),
                          static_cast<std::uint16_t>(area.height), ~0U, XCB_IMAGE_FORMAT_Z_PIXMAP, segment, 0));
    if (!connection.succeeded(attached) || !written) return std::nullopt;
    xcb_shm_detach(connection.get(), segment);
    return memory;
}

/// The same over the connection.
XcbMemory<xcb_get_image_reply_t> readSent(X11Connection& connection, const ScreenArea& area) {
    return connection.answer<xcb_get_image_reply_t>(
        xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, connection.root(), static_cast<std::int16_t>(area.x),
                      static_cast<std::int16_t>(area.y), static_cast<std::uint16_t>(area.width),
                      static_cast<std::uint16_t>(area.height), ~0U));
}

std::unique_ptr<PixelImage> readScreen(X11Connection& connection, const ScreenArea& area) {
    const auto format = rootPixelFormat(*xcb_get_setup(connection.get()), connection.screen());
    if (!format) return nullptr;
    const std::size_t width = sizeOf(area.width), height = sizeOf(area.height);
    const std::size_t size = format->rowLength(width) * height;
    if (auto memory = readShared(connection, area, size)) {
        if (format->isNative()) return std::make_unique<SharedImage>(std::move(*memory), width, height);
        return std::make_unique<VectorImage>(convertedPixels(*format, memory->bytes(), width, height), width, height,
                                             true);
    }
    const auto sent = readSent(connection, area);
    if (!sent || sizeOf(xcb_get_image_data_length(sent.get())) < size) return nullptr;
    return std::make_unique<VectorImage>(convertedPixels(*format, xcb_get_image_data(sent.get()), width, height), width,
                                         height, true);
}

ScreenArea common(const ScreenArea& one, const ScreenArea& other) {
    const int left = std::max(one.x, other.x), top = std::max(one.y, other.y);
    const int right = std::min(one.x + one.width, other.x + other.width),
              bottom = std::min(one.y + one.height, other.y + other.height);
    return {left, top, std::max(right - left, 0), std::max(bottom - top, 0)};
}

/// A transparent picture of `area` with `part`, which lies at `place`, in it.
std::unique_ptr<PixelImage> padded(const PixelImage* part, const ScreenArea& place, const ScreenArea& area) {
    const std::size_t width = sizeOf(area.width), height = sizeOf(area.height);
    std::vector<std::uint32_t> pixels(width * height, 0);
    for (std::size_t y = 0; part != nullptr && y < part->height(); ++y) {
        const std::span row(part->pixels() + y * part->stride(), part->width());
        auto target = pixels.begin()
                      + static_cast<std::ptrdiff_t>((sizeOf(place.y - area.y) + y) * width + sizeOf(place.x - area.x));
        std::ranges::transform(row, target, [](std::uint32_t pixel) { return pixel | 0xFF000000; });
    }
    return std::make_unique<VectorImage>(std::move(pixels), width, height, false);
}

} // namespace

std::unique_ptr<PixelImage> captureScreen(X11Connection& connection, const ScreenArea& area) {
    const auto root =
        connection.answer<xcb_get_geometry_reply_t>(xcb_get_geometry(connection.get(), connection.root()));
    if (!root || area.width <= 0 || area.height <= 0) return nullptr;
    const ScreenArea seen = common(area, {0, 0, root->width, root->height});
    if (seen == area) return readScreen(connection, area);
    if (seen.width == 0 || seen.height == 0) return padded(nullptr, seen, area);
    const auto part = readScreen(connection, seen);
    return part ? padded(part.get(), seen, area) : nullptr;
}

} // namespace vesk
