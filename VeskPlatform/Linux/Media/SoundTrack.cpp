#include "VeskPlatform/Linux/Media/SoundTrack.hpp"

#include <algorithm>
#include <cmath>

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
}

namespace vesk {
namespace {

/// What clips are off by before sound is moved to its place again, in seconds.
constexpr double tolerance = 0.04;

std::int64_t samplesOf(const MediaTime& time, int rate) {
    return std::llround(static_cast<double>(time.value) / time.timescale * rate);
}

} // namespace

SoundTrack::SoundTrack(const std::vector<ClipComposition::Piece>& pieces, const AVCodecContext& format, double seconds)
    : pieces_(pieces), rate_(format.sample_rate), frameSize_(format.frame_size > 0 ? format.frame_size : 1024),
      sampleCount_(std::llround(seconds * rate_)) {
    av_channel_layout_default(&layout_, 2);
}

void SoundTrack::open(const ClipComposition::Piece& piece) {
    isOpen_ = true;
    left_.clear();
    right_.clear();
    taken_ = 0;
    produced_ = 0;
    resampler_.reset();
    reader_.emplace(piece.path, AVMEDIA_TYPE_AUDIO);
}

/// Fills a gap before what comes at that time of the clip with silence.
void SoundTrack::keepInPlace(double time) {
    const std::int64_t due = std::llround(time * rate_);
    if (due > produced_ + std::llround(tolerance * rate_)) {
        const auto missing = static_cast<std::size_t>(std::min(due, sampleCount_) - produced_);
        left_.insert(left_.end(), missing, 0);
        right_.insert(right_.end(), missing, 0);
        produced_ += static_cast<std::int64_t>(missing);
    }
}

/// Sound may change its channels, rate or sample format in the middle of a clip; the resampler knows one form alone.
void SoundTrack::prepareFor(const AVFrame& frame) {
    if (resampler_ && frame.format == prepared_->format && frame.sample_rate == prepared_->sample_rate
        && av_channel_layout_compare(&frame.ch_layout, &prepared_->ch_layout) == 0)
        return;
    prepared_ = sharedFrame(frame);
    SwrContext* made = nullptr;
    checked(swr_alloc_set_opts2(&made, &layout_, AV_SAMPLE_FMT_FLTP, rate_, &prepared_->ch_layout,
                                static_cast<AVSampleFormat>(frame.format), frame.sample_rate, 0, nullptr),
            "preparing sound");
    resampler_.reset(made);
    checked(swr_init(resampler_.get()), "preparing sound");
}

/// Decodes another frame; the reader goes at the end.
void SoundTrack::readMore() {
    const FramePointer frame = reader_->next();
    if (!frame) return reader_.reset();
    const double time = reader_->timeOf(*frame);
    if (time + static_cast<double>(frame->nb_samples) / frame->sample_rate <= 0) return; // the encoder's run-in
    prepareFor(*frame);
    keepInPlace(time);
    const int room = checked(swr_get_out_samples(resampler_.get(), frame->nb_samples), "preparing sound");
    std::vector<float> left(static_cast<std::size_t>(room)), right(static_cast<std::size_t>(room));
    std::uint8_t* planes[2] = {reinterpret_cast<std::uint8_t*>(left.data()),
                               reinterpret_cast<std::uint8_t*>(right.data())};
    const int count = checked(swr_convert(resampler_.get(), planes, room,
                                          const_cast<const std::uint8_t**>(frame->extended_data), frame->nb_samples),
                              "resampling sound");
    left_.insert(left_.end(), left.begin(), left.begin() + count);
    right_.insert(right_.end(), right.begin(), right.begin() + count);
    produced_ += count;
}

/// Copies samples of the open piece as far as it has them; the rest of `target` is silent already.
void SoundTrack::take(AVFrame& target, int offset, int count) {
    while (reader_ && left_.size() - taken_ < static_cast<std::size_t>(count)) readMore();
    const std::size_t available = std::min(left_.size() - taken_, static_cast<std::size_t>(count));
    auto* left = reinterpret_cast<float*>(target.data[0]) + offset;
    auto* right = reinterpret_cast<float*>(target.data[1]) + offset;
    std::copy_n(left_.begin() + static_cast<std::ptrdiff_t>(taken_), available, left);
    std::copy_n(right_.begin() + static_cast<std::ptrdiff_t>(taken_), available, right);
    taken_ += available;
    constexpr std::size_t worthMoving = 1 << 16;
    if (taken_ < worthMoving) return;
    left_.erase(left_.begin(), left_.begin() + static_cast<std::ptrdiff_t>(taken_));
    right_.erase(right_.begin(), right_.begin() + static_cast<std::ptrdiff_t>(taken_));
    taken_ = 0;
}

FramePointer SoundTrack::next() {
    if (position_ >= sampleCount_) return nullptr;
    FramePointer frame = makeFrame();
    frame->nb_samples = static_cast<int>(std::min<std::int64_t>(frameSize_, sampleCount_ - position_));
    frame->format = AV_SAMPLE_FMT_FLTP;
    frame->sample_rate = rate_;
    checked(av_channel_layout_copy(&frame->ch_layout, &layout_), "making room for sound");
    checked(av_frame_get_buffer(frame.get(), 0), "making room for sound");
    for (int channel = 0; channel < 2; ++channel)
        std::fill_n(reinterpret_cast<float*>(frame->data[channel]), frame->nb_samples, 0.0F);

    for (int offset = 0; offset < frame->nb_samples && piece_ < pieces_.size();) {
        const std::int64_t start = samplesOf(pieces_[piece_].at, rate_);
        const std::int64_t end = start + samplesOf(pieces_[piece_].duration, rate_);
        const std::int64_t at = position_ + offset, frameEnd = position_ + frame->nb_samples;
        if (at >= end) {
            ++piece_;
            isOpen_ = false;
        } else if (at < start) {
            offset += static_cast<int>(std::min(start, frameEnd) - at);
        } else {
            if (!isOpen_) open(pieces_[piece_]);
            const int count = static_cast<int>(std::min(end, frameEnd) - at);
            take(*frame, offset, count);
            offset += count;
        }
    }
    frame->pts = position_;
    position_ += frame->nb_samples;
    return frame;
}

} // namespace vesk
