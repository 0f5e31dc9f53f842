#pragma once

#include "VeskPlatform/Linux/Media/MovieWriter.hpp"
#include "VeskPlatform/Linux/Media/PixelFrame.hpp"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vesk {

/// Writes clips of pictures. Frames that show the same buffer again become one sample that lasts as long: a picture is
/// encoded once however long it is shown, with all the quality that the bit rate allows over that time.
class StillClipWriter : public ClipWriter {
public:
    explicit StillClipWriter(std::string path) : path_(std::move(path)) {}

    bool addVideoInput(const VideoSettings& settings) override;
    bool startWriting() override;
    void startSession() override {}
    bool isReadyForMoreMediaData() override { return true; }
    bool append(const std::shared_ptr<const PixelBuffer>& buffer, MediaTime presentationTime) override;
    void markAsFinished() override {}
    Task<ClipWriterStatus> finishWriting() override;
    std::exception_ptr error() override { return error_; }

private:
    /// A buffer and the time from which it is shown, in units of 1/timescale seconds.
    struct Sample {
        std::shared_ptr<const PixelBuffer> buffer;
        std::int64_t start = 0;
    };
    void writeClip();
    std::int64_t lengthOf(std::size_t sample) const;
    bool fitsBitRate(const std::vector<PacketPointer>& packets) const;
    Encoder makeEncoder(int rateFactor) const;
    std::vector<PacketPointer> encoded(Encoder& encoder) const;

    std::string path_;
    VideoSettings settings_;
    std::int32_t timescale_ = 0;
    std::vector<Sample> samples_;
    /// One past the last frame's time.
    std::int64_t end_ = 0;
    std::exception_ptr error_;
};

} // namespace vesk
