#import "VeskPlatform/Apple/AVFoundationComposition.hpp"

#import "VeskPlatform/Apple/AVFoundationAsset.hpp"
#import "VeskPlatform/Apple/AVFoundationTimes.hpp"
#import "VeskPlatform/Apple/FoundationErrors.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"

namespace vesk {
namespace {

/// The framework chooses.
constexpr CMPersistentTrackID anyTrackID = 0;
static_assert(anyTrackID == kCMPersistentTrackID_Invalid);

const AVFoundationAsset& assetOf(const std::shared_ptr<MediaAsset>& asset) {
    return dynamic_cast<const AVFoundationAsset&>(*asset);
}

void insert(AVMutableCompositionTrack* _Nullable track, AVAssetTrack* _Nullable source, MediaTime duration,
            MediaTime at) {
    NSError* error = nil;
    if (track == nil || source == nil) throwError(error);
    const CMTimeRange range = CMTimeRangeMake(kCMTimeZero, cmTime(duration));
    if (![track insertTimeRange:range ofTrack:known(source) atTime:cmTime(at) error:&error]) throwError(error);
}

} // namespace

bool AVFoundationComposition::addVideoTrack() {
    video_ = [composition_ addMutableTrackWithMediaType:AVMediaTypeVideo preferredTrackID:anyTrackID];
    return video_ != nil;
}

bool AVFoundationComposition::addAudioTrack() {
    audio_ = [composition_ addMutableTrackWithMediaType:AVMediaTypeAudio preferredTrackID:anyTrackID];
    return audio_ != nil;
}

void AVFoundationComposition::insertVideo(const std::shared_ptr<MediaAsset>& asset, MediaTime duration, MediaTime at) {
    insert(video_, assetOf(asset).firstVideoTrack(), duration, at);
}

void AVFoundationComposition::insertAudio(const std::shared_ptr<MediaAsset>& asset, MediaTime duration, MediaTime at) {
    insert(audio_, assetOf(asset).firstAudioTrack(), duration, at);
}

} // namespace vesk
