#pragma once

#import <AVFoundation/AVFoundation.h>

#include "VeskPlatform/MediaFramework.hpp"

NS_ASSUME_NONNULL_BEGIN

namespace vesk {

class AVFoundationComposition;

/// Encodes a timeline with AVAssetExportSession.
class AVFoundationExport : public ExportSession {
public:
    /// Null where there is no session for it.
    static std::unique_ptr<ExportSession> create(const AVFoundationComposition& composition);

    Task<ExportStatus> exportMovie(ExportJob job) override;
    std::exception_ptr error() override;

private:
    AVFoundationExport(AVAssetExportSession* session, AVMutableCompositionTrack* track)
        : session_(session), track_(track) {}
    void configure(const ExportJob& job);
    void start(std::function<void(double)> progress, std::function<void(ExportStatus)> answer);

    AVAssetExportSession* session_;
    /// The pictures of the timeline.
    AVMutableCompositionTrack* track_;
};

} // namespace vesk

NS_ASSUME_NONNULL_END
