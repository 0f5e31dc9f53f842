#pragma once

#include "VeskPlatform/MediaGeometry.hpp"
#include "VeskSupport/Task.hpp"

#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// Pictures, clips and the timeline that a film is made of. All of it is used on the main executor. Where a call answers
// with nothing or false, it has failed without a reason of its own; otherwise it throws ErrorRecord.

namespace vesk {

/// A decoded picture, upright; adapters derive from it.
class MediaImage {
public:
    virtual ~MediaImage() = default;
    /// In pixels.
    virtual std::size_t width() const = 0;
    virtual std::size_t height() const = 0;
};

/// A file that holds pictures.
class ImageSource {
public:
    virtual ~ImageSource() = default;
    /// The first picture with its stored orientation applied, made smaller where its longer side has more pixels than
    /// `maximumPixelSize`; null where it cannot be decoded.
    virtual std::unique_ptr<MediaImage> makeThumbnail(std::size_t maximumPixelSize) = 0;
};

/// Draws into a frame, with the origin at its top left corner. Transparent places let the ground show through.
class FrameContext {
public:
    virtual ~FrameContext() = default;
    /// Fills with a gray between 0 and 1, opaque.
    virtual void fill(const MediaRectangle& rectangle, double gray) = 0;
    virtual void draw(const MediaImage& image, const MediaRectangle& rectangle) = 0;
};

/// The memory of one frame, 8 bits each of blue, green, red and alpha.
class PixelBuffer {
public:
    virtual ~PixelBuffer() = default;
    /// False where there is no memory behind it; to be unlocked all the same.
    virtual bool lockBaseAddress() = 0;
    virtual void unlockBaseAddress() = 0;
    /// Of locked memory; null where it cannot be drawn into.
    virtual std::unique_ptr<FrameContext> makeContext() = 0;
};

/// H.264 of the High profile at the level that it needs.
struct VideoSettings {
    std::size_t width = 0, height = 0;
    /// In bits per second.
    std::int64_t averageBitRate = 0;

    bool operator==(const VideoSettings&) const = default;
};

enum class ClipWriterStatus { unknown = 0, writing = 1, completed = 2, failed = 3, cancelled = 4 };

/// Writes one silent MPEG-4 clip, frame after frame.
class ClipWriter {
public:
    virtual ~ClipWriter() = default;
    /// False where it cannot have that track.
    virtual bool addVideoInput(const VideoSettings& settings) = 0;
    virtual bool startWriting() = 0;
    /// The clip begins at time zero.
    virtual void startSession() = 0;
    virtual bool isReadyForMoreMediaData() = 0;
    /// The frame to be shown from that time on. The buffer does not change any more.
    virtual bool append(const std::shared_ptr<const PixelBuffer>& buffer, MediaTime presentationTime) = 0;
    virtual void markAsFinished() = 0;
    virtual Task<ClipWriterStatus> finishWriting() = 0;
    /// Why something failed; null where there is no reason.
    virtual std::exception_ptr error() = 0;
};

struct VideoTrack {
    MediaSize naturalSize;
    /// How the stored pictures are to be turned to stand upright.
    AffineTransform preferredTransform;
};

/// A clip in a file.
class MediaAsset {
public:
    virtual ~MediaAsset() = default;
    /// None where the file has none or it is no number.
    virtual Task<std::optional<MediaTime>> duration() = 0;
    virtual Task<std::vector<VideoTrack>> videoTracks() = 0;
    virtual Task<std::size_t> audioTrackCount() = 0;
};

/// A timeline of pieces of clips: at most one track of pictures and one of sound.
class MediaComposition {
public:
    virtual ~MediaComposition() = default;
    virtual bool addVideoTrack() = 0;
    virtual bool addAudioTrack() = 0;
    /// Puts the first `duration` of a clip's first video or audio track at a time of the timeline. The clip is kept; it
    /// was asked for its tracks of that kind.
    virtual void insertVideo(const std::shared_ptr<MediaAsset>& asset, MediaTime duration, MediaTime at) = 0;
    virtual void insertAudio(const std::shared_ptr<MediaAsset>& asset, MediaTime duration, MediaTime at) = 0;
};

/// From `start` on and for `duration`, pictures lie on the frame as the transform puts them.
struct CompositionInstruction {
    MediaTime start, duration;
    AffineTransform transform;

    bool operator==(const CompositionInstruction&) const = default;
};

/// How the pictures of a timeline become frames; places that no picture covers are black.
struct VideoComposition {
    MediaSize renderSize;
    MediaTime frameDuration;
    std::vector<CompositionInstruction> instructions;

    bool operator==(const VideoComposition&) const = default;
};

enum class ExportStatus { unknown = 0, waiting = 1, exporting = 2, completed = 3, failed = 4, cancelled = 5 };

struct ExportJob {
    std::string outputPath;
    /// Whether what players need first comes first in the file.
    bool optimizesForNetworkUse = false;
    VideoComposition videoComposition;
    /// Hears how much is done, from 0 to 1, now and then; may be empty.
    std::function<void(double)> progress;
};

/// Encodes a timeline as an MPEG-4 file in the highest quality.
class ExportSession {
public:
    virtual ~ExportSession() = default;
    virtual Task<ExportStatus> exportMovie(ExportJob job) = 0;
    /// Why it failed; null where there is no reason.
    virtual std::exception_ptr error() = 0;
};

class MediaFramework {
public:
    virtual ~MediaFramework() = default;
    /// Null where the file is no picture.
    virtual std::unique_ptr<ImageSource> openImage(const std::string& path) = 0;
    /// Null where there is no memory for it.
    virtual std::shared_ptr<PixelBuffer> makePixelBuffer(std::size_t width, std::size_t height) = 0;
    virtual std::unique_ptr<ClipWriter> makeClipWriter(const std::string& path) = 0;
    virtual std::shared_ptr<MediaAsset> openAsset(const std::string& path) = 0;
    virtual std::unique_ptr<MediaComposition> makeComposition() = 0;
    /// Null where there is no encoder. The composition outlives the session.
    virtual std::unique_ptr<ExportSession> makeExportSession(MediaComposition& composition) = 0;
};

} // namespace vesk
