#pragma once

#include "VeskPlatform/Linux/Media/ClipComposition.hpp"
#include "VeskPlatform/Linux/Media/FramePlacer.hpp"
#include "VeskPlatform/Linux/Media/StreamReader.hpp"

#include <memory>
#include <optional>

namespace vesk {

/// The frames of a timeline's pictures, one by one at its pace. Each shows the clip's last picture up to its time; a
/// picture that is shown for several frames is decoded and scaled once.
class PictureTrack {
public:
    PictureTrack(const std::vector<ClipComposition::Piece>& pieces, VideoComposition composition);

    std::int64_t frameCount() const { return frameCount_; }
    /// The next frame, for an encoder. Throws FfmpegError.
    const AVFrame& next();

private:
    void open(std::size_t piece);
    void advanceTo(double time);
    void place();

    const std::vector<ClipComposition::Piece>& pieces_;
    VideoComposition composition_;
    std::int64_t frameCount_ = 0, index_ = 0;
    std::size_t piece_ = 0;
    std::optional<StreamReader> reader_;
    std::optional<FramePlacer> placer_;
    /// The picture that is shown, and the one that comes after it.
    FramePointer current_, following_;
    FramePointer placed_;
    bool isPlaced_ = false;
};

} // namespace vesk
