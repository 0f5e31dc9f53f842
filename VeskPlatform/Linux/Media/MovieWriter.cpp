#include "VeskPlatform/Linux/Media/MovieWriter.hpp"

#include <new>
#include <unistd.h>

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
}

namespace vesk {
namespace {

constexpr int soundRate = 48'000;
constexpr std::int64_t soundBitRate = 256'000;

CodecPointer encoderNamed(const char* name) {
    const AVCodec* codec = avcodec_find_encoder_by_name(name);
    if (codec == nullptr) throw FfmpegError(AVERROR_ENCODER_NOT_FOUND, std::string("opening the encoder ") + name);
    CodecPointer encoder(avcodec_alloc_context3(codec));
    if (!encoder) throw std::bad_alloc();
    encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER; // MPEG-4 files keep it apart
    return encoder;
}

} // namespace

void Encoder::encode(const AVFrame* frame, const std::function<void(AVPacket&)>& take) {
    checked(avcodec_send_frame(codec_.get(), frame), "encoding");
    const PacketPointer packet = makePacket();
    while (true) {
        const int result = avcodec_receive_packet(codec_.get(), packet.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) return;
        checked(result, "encoding");
        take(*packet);
    }
}

Encoder makeVideoEncoder(int width, int height, AVRational timeBase, const VideoQuality& quality) {
    CodecPointer encoder = encoderNamed("libx264");
    encoder->width = width;
    encoder->height = height;
    encoder->pix_fmt = AV_PIX_FMT_YUV420P;
    encoder->time_base = timeBase;
    encoder->framerate = av_inv_q(timeBase);
    encoder->sample_aspect_ratio = {1, 1};
    encoder->color_range = AVCOL_RANGE_MPEG;
    encoder->colorspace = AVCOL_SPC_BT709;
    encoder->color_primaries = AVCOL_PRI_BT709;
    encoder->color_trc = AVCOL_TRC_BT709;
    av_opt_set(encoder->priv_data, "preset", quality.preset, 0);
    av_opt_set(encoder->priv_data, "profile", "high", 0);
    av_opt_set_double(encoder->priv_data, "crf", quality.rateFactor, 0);
    checked(avcodec_open2(encoder.get(), nullptr, nullptr), "opening the encoder libx264");
    return Encoder(std::move(encoder));
}

Encoder makeAudioEncoder() {
    CodecPointer encoder = encoderNamed("aac");
    encoder->sample_fmt = AV_SAMPLE_FMT_FLTP;
    encoder->sample_rate = soundRate;
    encoder->bit_rate = soundBitRate;
    encoder->time_base = {1, soundRate};
    av_channel_layout_default(&encoder->ch_layout, 2);
    checked(avcodec_open2(encoder.get(), nullptr, nullptr), "opening the encoder aac");
    return Encoder(std::move(encoder));
}

MovieWriter::MovieWriter(const std::string& path) : path_(path) {
    checked(avformat_alloc_output_context2(&output_, nullptr, "mp4", path.c_str()), path);
    const int opened = avio_open(&output_->pb, ("file:" + path).c_str(), AVIO_FLAG_WRITE);
    if (opened >= 0) return;
    avformat_free_context(output_);
    throw FfmpegError(opened, path);
}

MovieWriter::~MovieWriter() {
    avio_closep(&output_->pb);
    avformat_free_context(output_);
    if (!hasEnded_ && isRegularFile(path_)) ::unlink(path_.c_str());
}

int MovieWriter::addTrack(const AVCodecContext& codec) {
    AVStream* stream = avformat_new_stream(output_, nullptr);
    if (stream == nullptr) throw std::bad_alloc();
    checked(avcodec_parameters_from_context(stream->codecpar, &codec), path_);
    stream->time_base = codec.time_base;
    stream->avg_frame_rate = codec.framerate;
    return stream->index;
}

void MovieWriter::begin(bool fastStart) {
    AVDictionary* options = nullptr;
    if (fastStart) av_dict_set(&options, "movflags", "+faststart", 0);
    const int result = avformat_write_header(output_, &options);
    av_dict_free(&options);
    checked(result, path_);
}

void MovieWriter::write(AVPacket& packet, int track, AVRational timeBase) {
    packet.stream_index = track;
    av_packet_rescale_ts(&packet, timeBase, output_->streams[track]->time_base);
    checked(av_interleaved_write_frame(output_, &packet), path_);
}

void MovieWriter::end() {
    checked(av_write_trailer(output_), path_);
    checked(avio_closep(&output_->pb), path_);
    hasEnded_ = true;
}

} // namespace vesk
