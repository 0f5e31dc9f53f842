#pragma once

#include "VeskPlatform/Linux/Media/FfmpegObjects.hpp"
#include "VeskPlatform/MediaGeometry.hpp"

#include <string>

namespace vesk {

/// The formats of clips, in FFmpeg's names.
inline constexpr const char* clipFormats = "mov,mp4,m4a,3gp,3g2,mj2,matroska,webm,avi,mpegts";

/// The size that a track's pictures are meant to have; with pixels that are not square as many square ones wide. What
/// the file says of the pixels counts for more than what its stream says.
MediaSize naturalSize(AVFormatContext& input, AVStream& stream);

/// The decoded frames of one track of a clip, in the order in which they are shown.
class StreamReader {
public:
    /// The clip's first track of that type. Throws FfmpegError, AVERROR_STREAM_NOT_FOUND where there is none.
    StreamReader(const std::string& path, AVMediaType type);

    /// None at the end; what cannot be decoded is passed over. Throws FfmpegError where there is no memory left.
    FramePointer next();
    /// When a frame is shown, in seconds from the clip's beginning.
    double timeOf(const AVFrame& frame) const;
    /// Of the track, also where single pictures have another size.
    MediaSize naturalSize() const { return vesk::naturalSize(*input_, *input_->streams[stream_]); }

private:
    bool feed();

    InputPointer input_;
    int stream_ = -1;
    CodecPointer decoder_;
    PacketPointer packet_;
    double beginning_ = 0;
    bool ended_ = false;
};

} // namespace vesk
