#pragma once

#include "VeskPlatform/Linux/Media/ClipComposition.hpp"
#include "VeskPlatform/Linux/Media/StreamReader.hpp"

#include <optional>
#include <vector>

namespace vesk {

/// The sound of a timeline as stereo samples, with silence where no clip has any.
class SoundTrack {
public:
    /// `format` is the encoder's.
    SoundTrack(const std::vector<ClipComposition::Piece>& pieces, const AVCodecContext& format, double seconds);

    std::int64_t sampleCount() const { return sampleCount_; }
    std::int64_t position() const { return position_; }
    /// The next samples, at most as many as an encoder's frame has; none at the end. Throws FfmpegError.
    FramePointer next();

private:
    void open(const ClipComposition::Piece& piece);
    void readMore();
    void prepareFor(const AVFrame& frame);
    void keepInPlace(double time);
    void take(AVFrame& target, int offset, int count);

    const std::vector<ClipComposition::Piece>& pieces_;
    int rate_, frameSize_;
    AVChannelLayout layout_{};
    std::int64_t sampleCount_ = 0, position_ = 0;
    std::size_t piece_ = 0;
    bool isOpen_ = false;
    std::optional<StreamReader> reader_;
    ResamplerPointer resampler_;
    /// A frame of the form that the resampler takes.
    FramePointer prepared_;
    /// Samples of the open piece that were not taken yet, per channel.
    std::vector<float> left_, right_;
    std::size_t taken_ = 0;
    /// How many samples of the piece there were so far.
    std::int64_t produced_ = 0;
};

} // namespace vesk
