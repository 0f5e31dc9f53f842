#include "VeskPlatform/Linux/Media/FfmpegObjects.hpp"

#include <array>
#include <cerrno>
#include <filesystem>
#include <new>
#include <system_error>

namespace vesk {
namespace {

std::string describe(int code, const std::string& action) {
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    av_strerror(code, text.data(), text.size());
    return action + ": " + text.data();
}

template <class Pointer> Pointer required(Pointer object) {
    if (!object) throw std::bad_alloc();
    return object;
}

} // namespace

FfmpegError::FfmpegError(int code, const std::string& action)
    : ErrorRecord("VeskMediaFramework", code, describe(code, action)) {}

int checked(int result, const std::string& action) {
    if (result < 0) throw FfmpegError(result, action);
    return result;
}

FramePointer makeFrame() { return required(FramePointer(av_frame_alloc())); }
PacketPointer makePacket() { return required(PacketPointer(av_packet_alloc())); }

FramePointer makePicture(int width, int height, AVPixelFormat format) {
    FramePointer picture = makeFrame();
    picture->width = width;
    picture->height = height;
    picture->format = format;
    checked(av_frame_get_buffer(picture.get(), 0), "making room for a picture");
    return picture;
}

FramePointer sharedFrame(const AVFrame& frame) { return required(FramePointer(av_frame_clone(&frame))); }

bool isRegularFile(const std::string& path) {
    std::error_code failure;
    return std::filesystem::is_regular_file(path, failure);
}

InputPointer openInput(const std::string& path, const char* formats, const AVInputFormat* known) {
    if (!isRegularFile(path)) throw FfmpegError(AVERROR(EINVAL), path);
    AVDictionary* options = nullptr;
    av_dict_set(&options, "format_whitelist", formats, 0);
    av_dict_set(&options, "protocol_whitelist", "file", 0);
    AVFormatContext* opened = nullptr;
    const int result = avformat_open_input(&opened, ("file:" + path).c_str(), known, &options);
    av_dict_free(&options);
    checked(result, path);
    InputPointer input(opened);
    checked(avformat_find_stream_info(input.get(), nullptr), path);
    return input;
}

CodecPointer openDecoder(const AVStream& stream, const DecoderOptions& options) {
    const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
    if (codec == nullptr) throw FfmpegError(AVERROR_DECODER_NOT_FOUND, "opening a decoder");
    auto decoder = required(CodecPointer(avcodec_alloc_context3(codec)));
    checked(avcodec_parameters_to_context(decoder.get(), stream.codecpar), "opening a decoder");
    decoder->pkt_timebase = stream.time_base;
    decoder->thread_count = 0;
    decoder->lowres = options.halvings;
    if (options.refusesDamage) decoder->err_recognition |= AV_EF_EXPLODE;
    checked(avcodec_open2(decoder.get(), codec, nullptr), "opening a decoder");
    return decoder;
}

} // namespace vesk
