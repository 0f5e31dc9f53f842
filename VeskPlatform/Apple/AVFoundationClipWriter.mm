#import "VeskPlatform/Apple/AVFoundationClipWriter.hpp"

#import "VeskPlatform/Apple/AVFoundationErrors.hpp"
#import "VeskPlatform/Apple/AVFoundationTimes.hpp"
#import "VeskPlatform/Apple/CoreVideoPixelBuffer.hpp"
#import "VeskPlatform/Apple/FoundationErrors.hpp"
#import "VeskPlatform/Apple/FoundationFileItems.hpp"

#include "VeskSupport/CallbackAnswer.hpp"

#include <utility>

namespace vesk {
namespace {

static_assert(static_cast<NSInteger>(ClipWriterStatus::unknown) == AVAssetWriterStatusUnknown
              && static_cast<NSInteger>(ClipWriterStatus::writing) == AVAssetWriterStatusWriting
              && static_cast<NSInteger>(ClipWriterStatus::completed) == AVAssetWriterStatusCompleted
              && static_cast<NSInteger>(ClipWriterStatus::failed) == AVAssetWriterStatusFailed
              && static_cast<NSInteger>(ClipWriterStatus::cancelled) == AVAssetWriterStatusCancelled);

AVAssetWriter* openWriter(const std::string& path) {
    NSError* error = nil;
    AVAssetWriter* writer = [AVAssetWriter assetWriterWithURL:usableFileUrl(path)
                                                     fileType:AVFileTypeMPEG4
                                                        error:&error];
    if (writer == nil) throwError(error);
    return writer;
}

NSDictionary<NSString*, id>* outputSettings(const VideoSettings& settings) {
    return @{
        AVVideoCodecKey : AVVideoCodecTypeH264,
        AVVideoWidthKey : @(settings.width),
        AVVideoHeightKey : @(settings.height),
        AVVideoCompressionPropertiesKey : @{
            AVVideoAverageBitRateKey : @(settings.averageBitRate),
            AVVideoProfileLevelKey : AVVideoProfileLevelH264HighAutoLevel,
        },
    };
}

NSDictionary<NSString*, id>* bufferAttributes(const VideoSettings& settings) {
    NSMutableDictionary<NSString*, id>* attributes =
        [NSMutableDictionary dictionaryWithDictionary:imageCompatibility()];
    attributes[(__bridge NSString*)kCVPixelBufferPixelFormatTypeKey] = @(framePixelFormat);
    attributes[(__bridge NSString*)kCVPixelBufferWidthKey] = @(settings.width);
    attributes[(__bridge NSString*)kCVPixelBufferHeightKey] = @(settings.height);
    return attributes;
}

} // namespace

AVFoundationClipWriter::AVFoundationClipWriter(const std::string& path) : writer_(openWriter(path)) {}

bool AVFoundationClipWriter::addVideoInput(const VideoSettings& settings) {
    AVAssetWriterInput* input = [AVAssetWriterInput assetWriterInputWithMediaType:AVMediaTypeVideo
                                                                   outputSettings:outputSettings(settings)];
    input.expectsMediaDataInRealTime = NO;
    adaptor_ = [AVAssetWriterInputPixelBufferAdaptor
        assetWriterInputPixelBufferAdaptorWithAssetWriterInput:input
                                   sourcePixelBufferAttributes:bufferAttributes(settings)];
    if (![writer_ canAddInput:input]) return false;
    [writer_ addInput:input];
    input_ = input;
    return true;
}

bool AVFoundationClipWriter::startWriting() { return [writer_ startWriting]; }

void AVFoundationClipWriter::startSession() { [writer_ startSessionAtSourceTime:kCMTimeZero]; }

/// A writer that has failed takes no more data, and nobody must wait until it does.
bool AVFoundationClipWriter::isReadyForMoreMediaData() {
    return input_.readyForMoreMediaData || writer_.status != AVAssetWriterStatusWriting;
}

bool AVFoundationClipWriter::append(const std::shared_ptr<const PixelBuffer>& buffer, MediaTime presentationTime) {
    if (!input_.readyForMoreMediaData) return false; // the framework ends a program that appends all the same
    const CVPixelBufferRef pixels = dynamic_cast<const CoreVideoPixelBuffer&>(*buffer).get();
    return [adaptor_ appendPixelBuffer:pixels withPresentationTime:cmTime(presentationTime)];
}

void AVFoundationClipWriter::markAsFinished() { [input_ markAsFinished]; }

Task<ClipWriterStatus> AVFoundationClipWriter::finishWriting() {
    const std::function<void(std::function<void(ClipWriterStatus)>)> begin =
        [this](std::function<void(ClipWriterStatus)> answer) { finish(std::move(answer)); };
    co_return co_await answerOfCallback<ClipWriterStatus>(begin);
}

/// A writer that does not write has its end already, and the framework ends a program that asks for one all the same.
void AVFoundationClipWriter::finish(std::function<void(ClipWriterStatus)> answer) {
    AVAssetWriter* writer = writer_;
    if (writer.status != AVAssetWriterStatusWriting) return answer(static_cast<ClipWriterStatus>(writer.status));
    [writer finishWritingWithCompletionHandler:^{
      answer(static_cast<ClipWriterStatus>(writer.status));
    }];
}

std::exception_ptr AVFoundationClipWriter::error() { return failureOf(writer_.error); }

} // namespace vesk
