#include "VeskPlatform/Linux/Media/StillClipWriter.hpp"

#include "VeskPlatform/Linux/Media/FramePlacer.hpp"

namespace vesk {
namespace {

/// From hardly any loss to a good deal, in steps that each halve the size or so.
constexpr int bestRateFactor = 10, worstRateFactor = 40, rateFactorStep = 6;

} // namespace

bool StillClipWriter::addVideoInput(const VideoSettings& settings) {
    settings_ = settings;
    return avcodec_find_encoder_by_name("libx264") != nullptr;
}

/// The file is opened now, so that a folder that refuses it is found out before the work is done.
bool StillClipWriter::startWriting() {
    try {
        MovieWriter probe(path_);
        return true;
    } catch (const FfmpegError&) {
        error_ = std::current_exception();
        return false;
    }
}

bool StillClipWriter::append(const std::shared_ptr<const PixelBuffer>& buffer, MediaTime presentationTime) {
    timescale_ = presentationTime.timescale;
    end_ = presentationTime.value + 1;
    if (samples_.empty() || samples_.back().buffer != buffer) samples_.push_back({buffer, presentationTime.value});
    return true;
}

Task<ClipWriterStatus> StillClipWriter::finishWriting() {
    try {
        writeClip();
        co_return ClipWriterStatus::completed;
    } catch (const FfmpegError&) {
        error_ = std::current_exception();
    }
    co_return ClipWriterStatus::failed;
}

std::int64_t StillClipWriter::lengthOf(std::size_t sample) const {
    const std::int64_t end = sample + 1 < samples_.size() ? samples_[sample + 1].start : end_;
    return end - samples_[sample].start;
}

bool StillClipWriter::fitsBitRate(const std::vector<PacketPointer>& packets) const {
    std::int64_t bits = 0;
    for (const PacketPointer& packet : packets) bits += std::int64_t{packet->size} * 8;
    return bits <= settings_.averageBitRate * end_ / timescale_;
}

Encoder StillClipWriter::makeEncoder(int rateFactor) const {
    return makeVideoEncoder(static_cast<int>(settings_.width), static_cast<int>(settings_.height), {1, timescale_},
                            {.rateFactor = rateFactor});
}

std::vector<PacketPointer> StillClipWriter::encoded(Encoder& encoder) const {
    std::vector<PacketPointer> packets;
    const auto keep = [&](AVPacket& packet) {
        packets.push_back(makePacket());
        av_packet_move_ref(packets.back().get(), &packet);
    };
    FramePlacer placer(encoderChain());
    for (const Sample& sample : samples_) {
        const FramePointer frame = placer.placed(dynamic_cast<const PixelFrame&>(*sample.buffer).frame());
        frame->pts = sample.start;
        encoder.encode(frame.get(), keep);
    }
    encoder.encode(nullptr, keep);
    return packets;
}

void StillClipWriter::writeClip() {
    int rateFactor = bestRateFactor;
    Encoder encoder = makeEncoder(rateFactor);
    std::vector<PacketPointer> packets = encoded(encoder);
    while (!fitsBitRate(packets) && rateFactor < worstRateFactor) {
        rateFactor += rateFactorStep;
        encoder = makeEncoder(rateFactor);
        packets = encoded(encoder);
    }
    MovieWriter writer(path_);
    const int track = writer.addTrack(encoder.codec());
    writer.begin(false);
    for (std::size_t i = 0; i < packets.size(); ++i) {
        packets[i]->duration = packets.size() == samples_.size() ? lengthOf(i) : 1;
        writer.write(*packets[i], track, encoder.codec().time_base);
    }
    writer.end();
}

} // namespace vesk
