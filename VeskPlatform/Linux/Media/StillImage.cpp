#include "VeskPlatform/Linux/Media/StillImage.hpp"

#include "VeskPlatform/Linux/Media/HeifImage.hpp"
#include "VeskPlatform/Linux/Media/PngOrientation.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <string_view>
#include <utility>

namespace vesk {
namespace {

/// The reader, by FFmpeg's name, for a file that begins so.
struct ImageFormat {
    std::string_view beginning;
    const char* name;
};
using namespace std::string_view_literals;
constexpr std::array<ImageFormat, 4> imageFormats{
    {{"\xFF\xD8\xFF"sv, "jpeg_pipe"}, {"\x89PNG\r\n\x1A\n"sv, "png_pipe"}, {"GIF8"sv, "gif"}, {"RIFF"sv, "webp_pipe"}}};

/// Null where the file begins like none of them. The file's name tells nothing: users rename.
const char* formatOf(const std::string& path) {
    std::array<char, 8> head{};
    std::ifstream file(path, std::ios::binary);
    file.read(head.data(), head.size());
    const std::string_view read(head.data(), static_cast<std::size_t>(file.gcount()));
    const auto found = std::ranges::find_if(
        imageFormats, [&](const ImageFormat& format) { return read.starts_with(format.beginning); });
    return found == imageFormats.end() ? nullptr : found->name;
}

constexpr int mostHalvings = 3; // what the JPEG decoder offers

std::int64_t pixels(const AVCodecParameters& parameters) {
    return std::int64_t{parameters.width} * std::int64_t{parameters.height};
}

/// How often the sides of a JPEG are halved while it is decoded, so that they keep `needed` pixels if they can.
int halvings(const AVCodecParameters& parameters, std::size_t needed) {
    const std::int64_t longer = std::max(parameters.width, parameters.height);
    int count = 0;
    while (count < mostHalvings
           && (longer >> (count + 1) >= static_cast<std::int64_t>(needed)
               || pixels(parameters) >> (2 * count) > mostDecodedPixels))
        ++count;
    return count;
}

/// The first picture that the stream holds; null where there is none whole.
FramePointer firstPicture(AVFormatContext& input, AVCodecContext& decoder, int stream) {
    const PacketPointer packet = makePacket();
    FramePointer frame = makeFrame();
    bool ended = false;
    while (!ended) {
        ended = av_read_frame(&input, packet.get()) < 0;
        if (!ended && packet->stream_index != stream) {
            av_packet_unref(packet.get());
            continue;
        }
        const int sent = avcodec_send_packet(&decoder, ended ? nullptr : packet.get());
        av_packet_unref(packet.get());
        if (sent < 0 && sent != AVERROR(EAGAIN)) return nullptr;
        if (avcodec_receive_frame(&decoder, frame.get()) >= 0) return frame;
    }
    return nullptr;
}

Orientation storedOrientation(const AVFrame& frame, const std::string& path) {
    const AVDictionaryEntry* entry = av_dict_get(frame.metadata, "Orientation", nullptr, 0);
    return entry == nullptr ? orientationOfPng(path) : orientationOfExif(std::atoi(entry->value));
}

class FfmpegImageSource : public ImageSource {
public:
    FfmpegImageSource(std::string path, InputPointer input, int stream)
        : path_(std::move(path)), input_(std::move(input)), stream_(stream) {}

    std::unique_ptr<MediaImage> makeThumbnail(std::size_t maximumPixelSize) override {
        try {
            const AVStream& stream = *input_->streams[stream_];
            const bool isJpeg = stream.codecpar->codec_id == AV_CODEC_ID_MJPEG;
            const int count = isJpeg ? halvings(*stream.codecpar, maximumPixelSize) : 0;
            if (pixels(*stream.codecpar) >> (2 * count) > mostDecodedPixels) return nullptr;
            // What a JPEG lacks would be green; the other decoders refuse such pictures themselves.
            const CodecPointer decoder = openDecoder(stream, {.halvings = count, .refusesDamage = isJpeg});
            FramePointer picture = firstPicture(*input_, *decoder, stream_);
            if (!picture) return nullptr;
            const Orientation orientation = storedOrientation(*picture, path_);
            return std::make_unique<StillImage>(std::move(picture), orientation, maximumPixelSize);
        } catch (const FfmpegError&) {
            return nullptr;
        }
    }

private:
    std::string path_;
    InputPointer input_;
    int stream_;
};

} // namespace

StillImage::StillImage(FramePointer stored, Orientation orientation, std::size_t maximumPixelSize)
    : stored_(std::move(stored)), orientation_(orientation) {
    double width = stored_->width, height = stored_->height;
    if (orientation_.swapsAxes()) std::swap(width, height);
    const double scale = std::min(1.0, static_cast<double>(maximumPixelSize) / std::max(width, height));
    width_ = static_cast<std::size_t>(std::max(1.0, std::round(width * scale)));
    height_ = static_cast<std::size_t>(std::max(1.0, std::round(height * scale)));
}

std::unique_ptr<ImageSource> openStillImage(const std::string& path) {
    if (!isRegularFile(path)) return nullptr;
    if (auto heif = openHeifImage(path)) return heif;
    const char* format = formatOf(path);
    if (format == nullptr) return nullptr;
    try {
        InputPointer input = openInput(path, format, av_find_input_format(format));
        const int stream = av_find_best_stream(input.get(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
        if (stream < 0) return nullptr;
        return std::make_unique<FfmpegImageSource>(path, std::move(input), stream);
    } catch (const FfmpegError&) {
        return nullptr;
    }
}

} // namespace vesk
