#pragma once

#include "VeskPlatform/Linux/Media/FfmpegObjects.hpp"

#include <cstdint>
#include <functional>
#include <string>

namespace vesk {

/// An encoder and what it has made, one packet after another.
class Encoder {
public:
    explicit Encoder(CodecPointer codec) : codec_(std::move(codec)) {}

    AVCodecContext& codec() { return *codec_; }
    /// Takes a frame, or the end where there is none; `take` gets each packet that is ready. Throws FfmpegError.
    void encode(const AVFrame* frame, const std::function<void(AVPacket&)>& take);

private:
    CodecPointer codec_;
};

/// A video encoder's settings beside its size: the quality (x264's constant rate factor) and how much work it does.
struct VideoQuality {
    int rateFactor = 18;
    const char* preset = "veryfast";
};

/// H.264 of the High profile in ITU-R BT.709. Throws FfmpegError, AVERROR_ENCODER_NOT_FOUND without x264.
Encoder makeVideoEncoder(int width, int height, AVRational timeBase, const VideoQuality& quality);
/// AAC, stereo, 48 kHz, 256 kbit/s. Throws FfmpegError.
Encoder makeAudioEncoder();

/// An MPEG-4 file that is being written.
class MovieWriter {
public:
    /// Opens the file. Throws FfmpegError. It goes again with a writer that has not come to `end`: half a film is none.
    explicit MovieWriter(const std::string& path);
    ~MovieWriter();
    MovieWriter(const MovieWriter&) = delete;
    MovieWriter& operator=(const MovieWriter&) = delete;

    /// The index of a new track for what the encoder makes. All tracks come before `begin`.
    int addTrack(const AVCodecContext& codec);
    /// With `fastStart`, what players need first is moved to the front of the file at the end.
    void begin(bool fastStart);
    /// A packet with times in the encoder's own time base.
    void write(AVPacket& packet, int track, AVRational timeBase);
    void end();

private:
    std::string path_;
    AVFormatContext* output_ = nullptr;
    bool hasEnded_ = false;
};

} // namespace vesk
