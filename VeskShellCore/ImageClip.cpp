#include "VeskShellCore/ImageClip.hpp"

#include "VeskPlatform/FileManager.hpp"
#include "VeskPlatform/Sleeper.hpp"
#include "VeskShellCore/FileRemoval.hpp"
#include "VeskShellCore/MediaError.hpp"
#include "VeskShellCore/ReelGeometry.hpp"
#include "VeskShellCore/ReelProfile.hpp"
#include "VeskSupport/FilePath.hpp"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace vesk {
namespace {

constexpr std::chrono::milliseconds readinessPause{10};
/// Twice the frame's longer side: enough that no detail is lost to the decoder's own scaling.
constexpr std::size_t largestThumbnail = std::max(reel::width, reel::height) * 2;

std::unique_ptr<MediaImage> decodedImage(MediaFramework& media, const std::string& path) {
    const auto source = media.openImage(path);
    if (!source) throw MediaError("Unable to read image: " + lastPathComponent(path));
    auto image = source->makeThumbnail(largestThumbnail);
    if (!image) throw MediaError("Unable to decode image: " + lastPathComponent(path));
    return image;
}

void drawLetterboxed(FrameContext& context, const MediaImage& image) {
    context.fill({0, 0, reel::renderSize.width, reel::renderSize.height}, 0);
    const MediaSize size{static_cast<double>(image.width()), static_cast<double>(image.height())};
    context.draw(image, letterboxed(size, reel::renderSize));
}

/// Locked for as long as it lives.
class LockedBuffer {
public:
    explicit LockedBuffer(PixelBuffer& buffer) : buffer_(buffer), hasMemory_(buffer.lockBaseAddress()) {}
    ~LockedBuffer() { buffer_.unlockBaseAddress(); }
    LockedBuffer(const LockedBuffer&) = delete;
    LockedBuffer& operator=(const LockedBuffer&) = delete;
    bool hasMemory() const { return hasMemory_; }

private:
    PixelBuffer& buffer_;
    bool hasMemory_;
};

std::unique_ptr<ClipWriter> startedWriter(MediaFramework& media, const std::string& path) {
    auto writer = media.makeClipWriter(path);
    const VideoSettings settings{
        .width = reel::width, .height = reel::height, .averageBitRate = reel::imageClipBitRate};
    if (!writer->addVideoInput(settings)) throw MediaError("Unable to create an image video track.");
    if (!writer->startWriting()) throwMediaError(writer->error(), "Unable to start image video writing.");
    writer->startSession();
    return writer;
}

Task<void> appendFrames(Platform& platform, ClipWriter& writer, std::shared_ptr<const PixelBuffer> frame,
                        std::int64_t count) {
    for (std::int64_t index = 0; index < count; ++index) {
        while (!writer.isReadyForMoreMediaData()) co_await platform.sleeper().sleep(readinessPause);
        if (!writer.append(frame, {index, reel::framesPerSecond}))
            throwMediaError(writer.error(), "Unable to append image frame.");
    }
}

Task<void> finishWriting(ClipWriter& writer) {
    const ClipWriterStatus status = co_await writer.finishWriting();
    if (status != ClipWriterStatus::completed) throwMediaError(writer.error(), "Image clip writing failed.");
}

} // namespace

std::int64_t imageClipFrames(double durationSeconds) {
    return std::max(std::int64_t{1}, static_cast<std::int64_t>(std::ceil(durationSeconds * reel::framesPerSecond)));
}

std::shared_ptr<PixelBuffer> makePixelBuffer(MediaFramework& media, const std::string& imagePath) {
    const auto image = decodedImage(media, imagePath);
    auto buffer = media.makePixelBuffer(reel::width, reel::height);
    if (!buffer) throw MediaError("Unable to allocate an image video frame.");
    const LockedBuffer locked(*buffer);
    if (!locked.hasMemory()) throw MediaError("Unable to access image video frame memory.");
    const auto context = buffer->makeContext();
    if (!context) throw MediaError("Unable to draw an image video frame.");
    drawLetterboxed(*context, *image);
    return buffer;
}

Task<void> writeImageClip(Platform& platform, std::string imagePath, std::string outputPath, double durationSeconds) {
    MediaFramework& media = platform.mediaFramework();
    removeIgnoringErrors(platform.fileManager(), outputPath);
    const auto writer = startedWriter(media, outputPath);
    std::shared_ptr<const PixelBuffer> frame = makePixelBuffer(media, imagePath);
    auto appending = appendFrames(platform, *writer, std::move(frame), imageClipFrames(durationSeconds));
    co_await std::move(appending);
    writer->markAsFinished();
    co_await finishWriting(*writer);
}

} // namespace vesk
