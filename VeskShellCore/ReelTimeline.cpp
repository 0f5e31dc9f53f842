#include "VeskShellCore/ReelTimeline.hpp"

#include "VeskShellCore/MediaError.hpp"
#include "VeskShellCore/ReelGeometry.hpp"
#include "VeskShellCore/ReelProfile.hpp"
#include "VeskSupport/FilePath.hpp"

#include <utility>

namespace vesk {
namespace {

/// A timeline that grows at its end.
struct Timeline {
    MediaComposition& composition;
    MediaTime cursor{0, reel::framesPerSecond};
    std::vector<CompositionInstruction> instructions{};
    bool hasAudioTrack = false;
};

Task<MediaTime> playableDuration(MediaAsset& asset, std::string path) {
    const auto duration = co_await asset.duration();
    if (!duration || duration->value <= 0)
        throw MediaError("Media input has no playable duration: " + lastPathComponent(path));
    co_return *duration;
}

Task<VideoTrack> firstVideoTrack(MediaAsset& asset, std::string path) {
    const auto tracks = co_await asset.videoTracks();
    if (tracks.empty()) throw MediaError("Media input has no video track: " + lastPathComponent(path));
    co_return tracks.front();
}

/// One track takes the sound of all clips; where there is none, it is silent.
void insertSound(Timeline& timeline, const std::shared_ptr<MediaAsset>& asset, MediaTime duration) {
    try {
        if (!timeline.hasAudioTrack) timeline.hasAudioTrack = timeline.composition.addAudioTrack();
        if (timeline.hasAudioTrack) timeline.composition.insertAudio(asset, duration, timeline.cursor);
    } catch (const ErrorRecord&) { // the clip goes on without sound
    }
}

Task<void> appendClip(Timeline& timeline, std::shared_ptr<MediaAsset> asset, std::string path) {
    auto measuring = playableDuration(*asset, path);
    const MediaTime duration = co_await std::move(measuring);
    auto looking = firstVideoTrack(*asset, path);
    const VideoTrack track = co_await std::move(looking);
    timeline.composition.insertVideo(asset, duration, timeline.cursor);
    const std::size_t audioTracks = co_await asset->audioTrackCount();
    if (audioTracks > 0) insertSound(timeline, asset, duration);
    timeline.instructions.push_back(
        {.start = timeline.cursor,
         .duration = duration,
         .transform = aspectFitTransform(track.naturalSize, track.preferredTransform, reel::renderSize)});
    timeline.cursor = sum(timeline.cursor, duration);
}

Task<void> exportTimeline(ExportSession& session, ExportJob job) {
    const ExportStatus status = co_await session.exportMovie(std::move(job));
    if (status == ExportStatus::completed) co_return;
    if (status == ExportStatus::failed || status == ExportStatus::cancelled)
        throwMediaError(session.error(), "Media export failed.");
    throw MediaError("Media export ended with status " + std::to_string(static_cast<int>(status)) + ".");
}

} // namespace

Task<double> concatenateVideoClips(MediaFramework& media, std::vector<std::string> clips, std::string outputPath,
                                   std::function<void(double)> progress) {
    const auto composition = media.makeComposition();
    if (!composition->addVideoTrack()) throw MediaError("Unable to create a video composition track.");
    Timeline timeline{.composition = *composition};
    for (const std::string& clip : clips) {
        auto appending = appendClip(timeline, media.openAsset(clip), clip);
        co_await std::move(appending);
    }
    const auto session = media.makeExportSession(*composition);
    if (!session) throw MediaError("Unable to create a media export session.");
    ExportJob job{.outputPath = std::move(outputPath),
                  .optimizesForNetworkUse = true,
                  .videoComposition = {.renderSize = reel::renderSize,
                                       .frameDuration = {1, reel::framesPerSecond},
                                       .instructions = std::move(timeline.instructions)},
                  .progress = std::move(progress)};
    auto exporting = exportTimeline(*session, std::move(job));
    co_await std::move(exporting);
    co_return seconds(timeline.cursor);
}

} // namespace vesk
