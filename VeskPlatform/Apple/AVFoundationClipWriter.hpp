#pragma once

#import <AVFoundation/AVFoundation.h>

#include "VeskPlatform/MediaFramework.hpp"

NS_ASSUME_NONNULL_BEGIN

namespace vesk {

/// Writes clips with AVAssetWriter. It takes CoreVideoPixelBuffers.
class AVFoundationClipWriter : public ClipWriter {
public:
    /// Throws ErrorRecord where the file cannot be written.
    explicit AVFoundationClipWriter(const std::string& path);

    bool addVideoInput(const VideoSettings& settings) override;
    bool startWriting() override;
    void startSession() override;
    bool isReadyForMoreMediaData() override;
    bool append(const std::shared_ptr<const PixelBuffer>& buffer, MediaTime presentationTime) override;
    void markAsFinished() override;
    Task<ClipWriterStatus> finishWriting() override;
    std::exception_ptr error() override;

private:
    void finish(std::function<void(ClipWriterStatus)> answer);

    AVAssetWriter* writer_;
    AVAssetWriterInput* _Nullable input_ = nil;
    AVAssetWriterInputPixelBufferAdaptor* _Nullable adaptor_ = nil;
};

} // namespace vesk

NS_ASSUME_NONNULL_END
