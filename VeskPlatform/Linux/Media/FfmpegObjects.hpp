#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <memory>
#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavfilter/avfilter.h>
#include <libavformat/avformat.h>
#include <libavutil/frame.h>
#include <libswresample/swresample.h>
#include <libswscale/swscale.h>
}

// FFmpeg's objects with owners, and its failures as errors of ours.

namespace vesk {

/// A failure of FFmpeg's libraries. Domain "VeskMediaFramework"; the code is the library's, an `errno` made negative
/// where the system failed. The description names what was being done, and the file where there is one.
class FfmpegError : public ErrorRecord {
public:
    FfmpegError(int code, const std::string& action);
};

/// `result`, which is not negative. Throws FfmpegError.
int checked(int result, const std::string& action);

struct FfmpegDeleter {
    void operator()(AVFormatContext* input) const { avformat_close_input(&input); }
    void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVFilterGraph* graph) const { avfilter_graph_free(&graph); }
    void operator()(SwsContext* scaler) const { sws_freeContext(scaler); }
    void operator()(SwrContext* resampler) const { swr_free(&resampler); }
};

using InputPointer = std::unique_ptr<AVFormatContext, FfmpegDeleter>;
using CodecPointer = std::unique_ptr<AVCodecContext, FfmpegDeleter>;
using FramePointer = std::unique_ptr<AVFrame, FfmpegDeleter>;
using PacketPointer = std::unique_ptr<AVPacket, FfmpegDeleter>;
using FilterGraphPointer = std::unique_ptr<AVFilterGraph, FfmpegDeleter>;
using ScalerPointer = std::unique_ptr<SwsContext, FfmpegDeleter>;
using ResamplerPointer = std::unique_ptr<SwrContext, FfmpegDeleter>;

/// New empty ones. Throw std::bad_alloc.
FramePointer makeFrame();
PacketPointer makePacket();
/// A frame with memory of its own.
FramePointer makePicture(int width, int height, AVPixelFormat format);
/// Another reference to the same picture.
FramePointer sharedFrame(const AVFrame& frame);

/// Whether a file is there that ends, links followed: a pipe keeps whoever opens it waiting for a writer.
bool isRegularFile(const std::string& path);

/// Opens a regular file of one of the formats, whose names FFmpeg knows, and reads what its streams are. `known` is the
/// format where that is known already. Nothing but this one file is read, whatever it refers to. Throws FfmpegError.
InputPointer openInput(const std::string& path, const char* formats, const AVInputFormat* known = nullptr);

struct DecoderOptions {
    /// How often the sides of pictures are halved while they are decoded; at most as often as the codec can.
    int halvings = 0;
    /// Whether a picture that is damaged or not whole is none at all.
    bool refusesDamage = false;
};

/// A decoder of a stream, with as many threads as help. Throws FfmpegError.
CodecPointer openDecoder(const AVStream& stream, const DecoderOptions& options = {});

} // namespace vesk
