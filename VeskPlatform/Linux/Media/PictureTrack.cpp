#include "VeskPlatform/Linux/Media/PictureTrack.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace vesk {
namespace {

double secondsOf(const MediaTime& time) { return static_cast<double>(time.value) / time.timescale; }

/// Where the transform puts pictures of the track's size, in whole even pixels within the frame.
PixelRectangle destination(const AffineTransform& transform, const MediaSize& natural, const MediaSize& frame) {
    const auto [width, height] = natural;
    const auto bounds = [](double first, double second, double third) {
        const double sum = first + second; // of the corners' coordinates: 0, first, second and both
        const double low = std::min({0.0, first, second, sum}) + third;
        return std::pair(low, std::max({0.0, first, second, sum}) + third);
    };
    const auto [left, right] = bounds(transform.a * width, transform.c * height, transform.tx);
    const auto [top, bottom] = bounds(transform.b * width, transform.d * height, transform.ty);
    const auto even = [](double value, double most) {
        return static_cast<int>(std::clamp(2 * std::round(value / 2), 0.0, most));
    };
    const int x = even(left, frame.width - 2), y = even(top, frame.height - 2);
    return {x, y, std::max(2, even(right, frame.width) - x), std::max(2, even(bottom, frame.height) - y)};
}

/// For the time before a clip's first picture, or instead of one of which none can be decoded.
FramePointer blackFrame(int width, int height) {
    FramePointer frame = makePicture(width, height, AV_PIX_FMT_YUV420P);
    const auto fill = [&](int plane, int rows, int level) {
        std::memset(frame->data[plane], level,
                    static_cast<std::size_t>(rows) * static_cast<std::size_t>(frame->linesize[plane]));
    };
    fill(0, height, 16);
    fill(1, height / 2, 128);
    fill(2, height / 2, 128);
    return frame;
}

} // namespace

PictureTrack::PictureTrack(const std::vector<ClipComposition::Piece>& pieces, VideoComposition composition)
    : pieces_(pieces), composition_(std::move(composition)) {
    const ClipComposition::Piece& last = pieces_.back();
    const double end = secondsOf(last.at) + secondsOf(last.duration), pace = secondsOf(composition_.frameDuration);
    frameCount_ = std::max(std::int64_t{1}, static_cast<std::int64_t>(std::llround(end / pace)));
    open(0);
}

void PictureTrack::open(std::size_t piece) {
    piece_ = piece;
    reader_.emplace(pieces_[piece].path, AVMEDIA_TYPE_VIDEO);
    placer_.reset();
    placed_ =
        blackFrame(static_cast<int>(composition_.renderSize.width), static_cast<int>(composition_.renderSize.height));
    isPlaced_ = true;
    current_ = nullptr;
    following_ = reader_->next();
}

/// A picture counts from half a frame before its time on, so that times that were rounded do no harm.
void PictureTrack::advanceTo(double time) {
    const double tolerance = secondsOf(composition_.frameDuration) / 2;
    while (following_ && (!current_ || reader_->timeOf(*following_) <= time + tolerance)) {
        current_ = std::move(following_);
        following_ = reader_->next();
        isPlaced_ = false;
    }
}

void PictureTrack::place() {
    const AffineTransform& transform = composition_.instructions[piece_].transform;
    const MediaSize& size = composition_.renderSize;
    if (!placer_)
        placer_.emplace(clipChain(orientationOf(transform), destination(transform, reader_->naturalSize(), size),
                                  static_cast<int>(size.width), static_cast<int>(size.height)));
    placed_ = placer_->placed(*current_);
    isPlaced_ = true;
}

const AVFrame& PictureTrack::next() {
    const double time = static_cast<double>(index_) * secondsOf(composition_.frameDuration);
    const double half = secondsOf(composition_.frameDuration) / 2;
    while (piece_ + 1 < pieces_.size() && time + half >= secondsOf(pieces_[piece_ + 1].at)) open(piece_ + 1);
    advanceTo(time - secondsOf(pieces_[piece_].at));
    if (!isPlaced_) place();
    placed_->pts = index_++;
    return *placed_;
}

} // namespace vesk
