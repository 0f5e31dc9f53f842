#import "VeskPlatform/Apple/AVFoundationAsset.hpp"

#import "VeskPlatform/Apple/AVFoundationErrors.hpp"
#import "VeskPlatform/Apple/AVFoundationTimes.hpp"
#import "VeskPlatform/Apple/FoundationFileItems.hpp"

#include "VeskSupport/CallbackAnswer.hpp"

#include <utility>

namespace vesk {
namespace {

/// What came of loading something.
template <class T> struct Loaded {
    T value{};
    std::exception_ptr failure;

    T taken() {
        if (failure) std::rethrow_exception(failure);
        return std::move(value);
    }
};

template <class T> using Answer = std::function<void(Loaded<T>)>;

NSError* _Nullable failureToLoad(id<AVAsynchronousKeyValueLoading> object, NSString* key) {
    NSError* error = nil;
    const AVKeyValueStatus status = [object statusOfValueForKey:key error:&error];
    return status == AVKeyValueStatusFailed || status == AVKeyValueStatusCancelled ? error : nil;
}

void loadDuration(AVAsset* asset, Answer<std::optional<MediaTime>> answer) {
    [asset loadValuesAsynchronouslyForKeys:@[ @"duration" ]
                         completionHandler:^{
                           NSError* error = failureToLoad(asset, @"duration");
                           if (error != nil)
                               answer({.value = {}, .failure = failureOf(error)});
                           else
                               answer({.value = mediaTime(asset.duration), .failure = nullptr});
                         }];
}

using KeepTracks = std::function<void(NSArray<AVAssetTrack*>* _Nullable)>;

void loadTracks(AVAsset* asset, AVMediaType type, KeepTracks keep, Answer<std::size_t> answer) {
    [asset loadTracksWithMediaType:type
                 completionHandler:^(NSArray<AVAssetTrack*>* _Nullable tracks, NSError* _Nullable error) {
                   keep(tracks);
                   if (tracks == nil)
                       answer({.value = 0, .failure = std::make_exception_ptr(errorRecord(error))});
                   else
                       answer({.value = tracks.count, .failure = nullptr});
                 }];
}

void loadShape(AVAssetTrack* track, Answer<VideoTrack> answer) {
    [track loadValuesAsynchronouslyForKeys:@[ @"naturalSize", @"preferredTransform" ]
                         completionHandler:^{
                           NSError* error = failureToLoad(track, @"naturalSize");
                           if (error == nil) error = failureToLoad(track, @"preferredTransform");
                           if (error != nil)
                               answer({.value = {}, .failure = failureOf(error)});
                           else
                               answer({.value = {.naturalSize = mediaSize(track.naturalSize),
                                                 .preferredTransform = affineTransform(track.preferredTransform)},
                                       .failure = nullptr});
                         }];
}

} // namespace

AVFoundationAsset::AVFoundationAsset(const std::string& path)
    : asset_([AVURLAsset URLAssetWithURL:usableFileUrl(path) options:nil]) {}

Task<std::optional<MediaTime>> AVFoundationAsset::duration() {
    using Result = Loaded<std::optional<MediaTime>>;
    const std::function<void(std::function<void(Result)>)> begin = [this](std::function<void(Result)> answer) {
        loadDuration(asset_, std::move(answer));
    };
    Result loaded = co_await answerOfCallback<Result>(begin);
    co_return loaded.taken();
}

Task<std::vector<VideoTrack>> AVFoundationAsset::videoTracks() {
    const std::function<void(Answer<std::size_t>)> begin = [this](Answer<std::size_t> answer) {
        const KeepTracks keep = [tracks = tracks_](NSArray<AVAssetTrack*>* video) { tracks->video = video; };
        loadTracks(asset_, AVMediaTypeVideo, keep, std::move(answer));
    };
    Loaded<std::size_t> count = co_await answerOfCallback<Loaded<std::size_t>>(begin);
    std::vector<VideoTrack> result(count.taken());
    for (std::size_t index = 0; index < result.size(); ++index) {
        const std::function<void(Answer<VideoTrack>)> load = [this, index](Answer<VideoTrack> answer) {
            loadShape(tracks_->video[index], std::move(answer));
        };
        Loaded<VideoTrack> track = co_await answerOfCallback<Loaded<VideoTrack>>(load);
        result[index] = track.taken();
    }
    co_return result;
}

Task<std::size_t> AVFoundationAsset::audioTrackCount() {
    const std::function<void(Answer<std::size_t>)> begin = [this](Answer<std::size_t> answer) {
        const KeepTracks keep = [tracks = tracks_](NSArray<AVAssetTrack*>* audio) { tracks->audio = audio; };
        loadTracks(asset_, AVMediaTypeAudio, keep, std::move(answer));
    };
    Loaded<std::size_t> count = co_await answerOfCallback<Loaded<std::size_t>>(begin);
    co_return count.taken();
}

} // namespace vesk
