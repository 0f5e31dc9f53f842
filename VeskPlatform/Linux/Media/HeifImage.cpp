#include "VeskPlatform/Linux/Media/HeifImage.hpp"

#include "VeskPlatform/Linux/Media/StillImage.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <libheif/heif.h>
#include <utility>

namespace vesk {
namespace {

struct HeifDeleter {
    void operator()(heif_context* context) const { heif_context_free(context); }
    void operator()(heif_image_handle* handle) const { heif_image_handle_release(handle); }
    void operator()(heif_image* image) const { heif_image_release(image); }
};
using ContextPointer = std::unique_ptr<heif_context, HeifDeleter>;
using HandlePointer = std::unique_ptr<heif_image_handle, HeifDeleter>;
using ImagePointer = std::unique_ptr<heif_image, HeifDeleter>;

bool isHeif(const std::string& path) {
    std::array<char, 12> head{};
    std::ifstream file(path, std::ios::binary);
    if (!file.read(head.data(), head.size())) return false;
    const auto answer = heif_check_filetype(reinterpret_cast<const std::uint8_t*>(head.data()), head.size());
    return answer == heif_filetype_yes_supported || answer == heif_filetype_maybe;
}

/// A copy of the rows as a frame; turns and mirrorings that the file asks for are done already.
FramePointer frameOf(const heif_image& image) {
    const int width = heif_image_get_width(&image, heif_channel_interleaved);
    const int height = heif_image_get_height(&image, heif_channel_interleaved);
    int stride = 0;
    const std::uint8_t* rows = heif_image_get_plane_readonly(&image, heif_channel_interleaved, &stride);
    if (rows == nullptr) return nullptr;
    FramePointer frame = makePicture(width, height, AV_PIX_FMT_RGBA);
    for (int y = 0; y < height; ++y)
        std::memcpy(frame->data[0] + std::ptrdiff_t{y} * frame->linesize[0], rows + std::ptrdiff_t{y} * stride,
                    static_cast<std::size_t>(width) * 4);
    return frame;
}

class HeifImageSource : public ImageSource {
public:
    HeifImageSource(ContextPointer context, HandlePointer handle)
        : context_(std::move(context)), handle_(std::move(handle)) {}

    std::unique_ptr<MediaImage> makeThumbnail(std::size_t maximumPixelSize) override {
        const std::int64_t pixels = std::int64_t{heif_image_handle_get_width(handle_.get())}
                                    * std::int64_t{heif_image_handle_get_height(handle_.get())};
        if (pixels > mostDecodedPixels) return nullptr;
        heif_image* decoded = nullptr;
        const heif_error failure =
            heif_decode_image(handle_.get(), &decoded, heif_colorspace_RGB, heif_chroma_interleaved_RGBA, nullptr);
        const ImagePointer image(decoded);
        if (failure.code != heif_error_Ok || !image) return nullptr;
        FramePointer frame = frameOf(*image);
        if (!frame) return nullptr;
        return std::make_unique<StillImage>(std::move(frame), Orientation(), maximumPixelSize);
    }

private:
    ContextPointer context_;
    HandlePointer handle_;
};

} // namespace

std::unique_ptr<ImageSource> openHeifImage(const std::string& path) {
    if (!isHeif(path)) return nullptr;
    ContextPointer context(heif_context_alloc());
    heif_image_handle* primary = nullptr;
    if (heif_context_read_from_file(context.get(), path.c_str(), nullptr).code != heif_error_Ok
        || heif_context_get_primary_image_handle(context.get(), &primary).code != heif_error_Ok)
        return nullptr;
    return std::make_unique<HeifImageSource>(std::move(context), HandlePointer(primary));
}

} // namespace vesk
