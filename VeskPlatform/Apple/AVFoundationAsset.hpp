#pragma once

#import <AVFoundation/AVFoundation.h>

#include "VeskPlatform/MediaFramework.hpp"

NS_ASSUME_NONNULL_BEGIN

namespace vesk {

/// A clip in a file, as AVFoundation loads it.
class AVFoundationAsset : public MediaAsset {
public:
    explicit AVFoundationAsset(const std::string& path);

    Task<std::optional<MediaTime>> duration() override;
    Task<std::vector<VideoTrack>> videoTracks() override;
    Task<std::size_t> audioTrackCount() override;

    /// The first track of the kind; nil where there is none, or where the tracks were not asked for.
    AVAssetTrack* _Nullable firstVideoTrack() const { return tracks_->video.firstObject; }
    AVAssetTrack* _Nullable firstAudioTrack() const { return tracks_->audio.firstObject; }

private:
    /// What the framework has loaded. It sets one of them on a thread of its own and only then answers.
    struct Tracks {
        NSArray<AVAssetTrack*>* _Nullable video = nil;
        NSArray<AVAssetTrack*>* _Nullable audio = nil;
    };

    AVURLAsset* asset_;
    std::shared_ptr<Tracks> tracks_ = std::make_shared<Tracks>();
};

} // namespace vesk

NS_ASSUME_NONNULL_END
