#include "VeskPlatform/Linux/Media/ClipAsset.hpp"

#include "VeskPlatform/Linux/Media/StreamReader.hpp"

extern "C" {
#include <libavutil/display.h>
}

namespace vesk {
namespace {

/// Of a track's display matrix (ISO/IEC 14496-12, section 8.3.2): rows of a, b, u; c, d, v; x, y, w, in units of
/// 1/65536.
AffineTransform preferredTransform(const AVStream& stream) {
    const std::uint8_t* data = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr);
    if (data == nullptr) return {};
    const auto* matrix = reinterpret_cast<const std::int32_t*>(data);
    const auto entry = [&](int index) { return static_cast<double>(matrix[index]) / 65536; };
    return {.a = entry(0), .b = entry(1), .c = entry(3), .d = entry(4), .tx = entry(6), .ty = entry(7)};
}

template <class Result, class Question> Result asked(const std::string& path, Question question) {
    try {
        const InputPointer input = openInput(path, clipFormats);
        return question(*input);
    } catch (const FfmpegError&) {
        return {};
    }
}

template <class Use> void forEachTrack(AVFormatContext& input, AVMediaType type, Use use) {
    for (unsigned i = 0; i < input.nb_streams; ++i)
        if (input.streams[i]->codecpar->codec_type == type
            && (input.streams[i]->disposition & AV_DISPOSITION_ATTACHED_PIC) == 0)
            use(*input.streams[i]);
}

} // namespace

Task<std::optional<MediaTime>> ClipAsset::duration() {
    co_return asked<std::optional<MediaTime>>(path_, [](const AVFormatContext& input) -> std::optional<MediaTime> {
        if (input.duration == AV_NOPTS_VALUE) return std::nullopt;
        return MediaTime{input.duration, AV_TIME_BASE};
    });
}

Task<std::vector<VideoTrack>> ClipAsset::videoTracks() {
    co_return asked<std::vector<VideoTrack>>(path_, [](AVFormatContext& input) {
        std::vector<VideoTrack> tracks;
        forEachTrack(input, AVMEDIA_TYPE_VIDEO, [&](AVStream& stream) {
            tracks.push_back({naturalSize(input, stream), preferredTransform(stream)});
        });
        return tracks;
    });
}

Task<std::size_t> ClipAsset::audioTrackCount() {
    co_return asked<std::size_t>(path_, [](AVFormatContext& input) {
        std::size_t count = 0;
        forEachTrack(input, AVMEDIA_TYPE_AUDIO, [&](AVStream&) { ++count; });
        return count;
    });
}

} // namespace vesk
