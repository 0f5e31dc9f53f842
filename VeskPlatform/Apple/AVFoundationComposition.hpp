#pragma once

#import <AVFoundation/AVFoundation.h>

#include "VeskPlatform/MediaFramework.hpp"

NS_ASSUME_NONNULL_BEGIN

namespace vesk {

/// A timeline in an AVMutableComposition. It takes AVFoundationAssets, of which the tracks were asked for.
class AVFoundationComposition : public MediaComposition {
public:
    bool addVideoTrack() override;
    bool addAudioTrack() override;
    void insertVideo(const std::shared_ptr<MediaAsset>& asset, MediaTime duration, MediaTime at) override;
    void insertAudio(const std::shared_ptr<MediaAsset>& asset, MediaTime duration, MediaTime at) override;

    AVMutableComposition* get() const { return composition_; }
    /// Nil before it was added.
    AVMutableCompositionTrack* _Nullable videoTrack() const { return video_; }

private:
    AVMutableComposition* composition_ = [AVMutableComposition composition];
    AVMutableCompositionTrack* _Nullable video_ = nil;
    AVMutableCompositionTrack* _Nullable audio_ = nil;
};

} // namespace vesk

NS_ASSUME_NONNULL_END
