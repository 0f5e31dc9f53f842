#include "VeskPlatform/Linux/Media/StreamReader.hpp"

#include <algorithm>

namespace vesk {
namespace {

int firstStream(const AVFormatContext& input, AVMediaType type) {
    for (unsigned i = 0; i < input.nb_streams; ++i)
        if (input.streams[i]->codecpar->codec_type == type
            && (input.streams[i]->disposition & AV_DISPOSITION_ATTACHED_PIC) == 0)
            return static_cast<int>(i);
    return AVERROR_STREAM_NOT_FOUND;
}

} // namespace

MediaSize naturalSize(AVFormatContext& input, AVStream& stream) {
    const AVRational aspect = av_guess_sample_aspect_ratio(&input, &stream, nullptr);
    const double stretch = aspect.num > 0 && aspect.den > 0 ? av_q2d(aspect) : 1;
    return {stream.codecpar->width * stretch, static_cast<double>(stream.codecpar->height)};
}

StreamReader::StreamReader(const std::string& path, AVMediaType type)
    : input_(openInput(path, clipFormats)), stream_(checked(firstStream(*input_, type), path)),
      decoder_(openDecoder(*input_->streams[stream_])), packet_(makePacket()) {
    if (input_->start_time != AV_NOPTS_VALUE && input_->start_time > 0)
        beginning_ = static_cast<double>(input_->start_time) / AV_TIME_BASE;
    for (unsigned i = 0; i < input_->nb_streams; ++i)
        if (static_cast<int>(i) != stream_) input_->streams[i]->discard = AVDISCARD_ALL;
}

/// Hands the decoder another packet, or the end; false once it has had that.
bool StreamReader::feed() {
    if (ended_) return false;
    while (av_read_frame(input_.get(), packet_.get()) >= 0) {
        const bool isOurs = packet_->stream_index == stream_;
        if (isOurs) (void)avcodec_send_packet(decoder_.get(), packet_.get()); // a damaged one is passed over
        av_packet_unref(packet_.get());
        if (isOurs) return true;
    }
    ended_ = true;
    (void)avcodec_send_packet(decoder_.get(), nullptr);
    return true;
}

FramePointer StreamReader::next() {
    FramePointer frame = makeFrame();
    while (true) {
        const int result = avcodec_receive_frame(decoder_.get(), frame.get());
        if (result >= 0) return frame;
        if (result == AVERROR(ENOMEM)) throw FfmpegError(result, "decoding");
        if (result == AVERROR_EOF || !feed()) return nullptr;
    }
}

double StreamReader::timeOf(const AVFrame& frame) const {
    if (frame.best_effort_timestamp == AV_NOPTS_VALUE) return 0;
    return static_cast<double>(frame.best_effort_timestamp) * av_q2d(input_->streams[stream_]->time_base) - beginning_;
}

} // namespace vesk
