#import "VeskPlatform/Apple/AVFoundationExport.hpp"

#import "VeskPlatform/Apple/AVFoundationComposition.hpp"
#import "VeskPlatform/Apple/AVFoundationErrors.hpp"
#import "VeskPlatform/Apple/AVFoundationTimes.hpp"
#import "VeskPlatform/Apple/FoundationFileItems.hpp"

#include "VeskSupport/CallbackAnswer.hpp"

#include <utility>

namespace vesk {
namespace {

static_assert(static_cast<NSInteger>(ExportStatus::unknown) == AVAssetExportSessionStatusUnknown
              && static_cast<NSInteger>(ExportStatus::waiting) == AVAssetExportSessionStatusWaiting
              && static_cast<NSInteger>(ExportStatus::exporting) == AVAssetExportSessionStatusExporting
              && static_cast<NSInteger>(ExportStatus::completed) == AVAssetExportSessionStatusCompleted
              && static_cast<NSInteger>(ExportStatus::failed) == AVAssetExportSessionStatusFailed
              && static_cast<NSInteger>(ExportStatus::cancelled) == AVAssetExportSessionStatusCancelled);

/// Between two tellings of how much is done.
constexpr std::uint64_t tellingInterval = NSEC_PER_SEC / 4;

AVVideoCompositionInstruction* instructionFor(const CompositionInstruction& piece, AVAssetTrack* track) {
    AVMutableVideoCompositionLayerInstruction* layer =
        [AVMutableVideoCompositionLayerInstruction videoCompositionLayerInstructionWithAssetTrack:track];
    [layer setTransform:cgTransform(piece.transform) atTime:cmTime(piece.start)];
    AVMutableVideoCompositionInstruction* instruction =
        [AVMutableVideoCompositionInstruction videoCompositionInstruction];
    instruction.timeRange = cmTimeRange(piece.start, piece.duration);
    instruction.layerInstructions = @[ layer ];
    return instruction;
}

AVVideoComposition* videoCompositionFor(const VideoComposition& composition, AVAssetTrack* track) {
    NSMutableArray<id<AVVideoCompositionInstruction>>* instructions =
        [NSMutableArray arrayWithCapacity:composition.instructions.size()];
    for (const CompositionInstruction& piece : composition.instructions)
        [instructions addObject:instructionFor(piece, track)];
    AVMutableVideoComposition* result = [AVMutableVideoComposition videoComposition];
    result.renderSize = cgSize(composition.renderSize);
    result.frameDuration = cmTime(composition.frameDuration);
    result.instructions = instructions;
    return result;
}

/// Tells on the main queue how much is done, now and then until it is cancelled.
dispatch_source_t startTelling(AVAssetExportSession* session, std::function<void(double)> progress) {
    dispatch_source_t timer = dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, 0, dispatch_get_main_queue());
    const dispatch_time_t first = dispatch_time(DISPATCH_TIME_NOW, static_cast<std::int64_t>(tellingInterval));
    dispatch_source_set_timer(timer, first, tellingInterval, tellingInterval / 4);
    dispatch_source_set_event_handler(timer, ^{
      progress(static_cast<double>(session.progress));
    });
    dispatch_activate(timer);
    return timer;
}

} // namespace

std::unique_ptr<ExportSession> AVFoundationExport::create(const AVFoundationComposition& composition) {
    AVMutableCompositionTrack* track = composition.videoTrack();
    AVAssetExportSession* session = [[AVAssetExportSession alloc] initWithAsset:composition.get()
                                                                     presetName:AVAssetExportPresetHighestQuality];
    if (track == nil || session == nil) return nullptr;
    return std::unique_ptr<ExportSession>(new AVFoundationExport(session, track));
}

Task<ExportStatus> AVFoundationExport::exportMovie(ExportJob job) {
    configure(job);
    const std::function<void(std::function<void(ExportStatus)>)> begin =
        [this, &job](std::function<void(ExportStatus)> answer) { start(job.progress, std::move(answer)); };
    co_return co_await answerOfCallback<ExportStatus>(begin);
}

void AVFoundationExport::configure(const ExportJob& job) {
    session_.outputURL = usableFileUrl(job.outputPath);
    session_.outputFileType = AVFileTypeMPEG4;
    session_.shouldOptimizeForNetworkUse = job.optimizesForNetworkUse;
    session_.videoComposition = videoCompositionFor(job.videoComposition, track_);
}

/// The end is told on the main queue too, so that nothing is told after it.
void AVFoundationExport::start(std::function<void(double)> progress, std::function<void(ExportStatus)> answer) {
    AVAssetExportSession* session = session_;
    dispatch_source_t timer = progress ? startTelling(session, progress) : nil;
    [session exportAsynchronouslyWithCompletionHandler:^{
      dispatch_async(dispatch_get_main_queue(), ^{
        if (timer != nil) dispatch_source_cancel(timer);
        const auto status = static_cast<ExportStatus>(session.status);
        if (progress && status == ExportStatus::completed) progress(1);
        answer(status);
      });
    }];
}

std::exception_ptr AVFoundationExport::error() { return failureOf(session_.error); }

} // namespace vesk
