#pragma once

#include "VeskPlatform/MediaFramework.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace vesk::test {

/// Files that are pictures and clips by what a test says of them; nothing is decoded. What is done is recorded.
/// `fails` names the steps that fail without a reason: "open-image", "thumbnail", "buffer", "lock", "context", "input",
/// "start", "append", "finish", "video-track", "audio-track", "session"; `throws` those that throw: "writer",
/// "insert-video", "insert-audio". `reason` is what a writer or a session gives as its own error.
class FakeMediaFramework : public MediaFramework {
public:
    struct Clip {
        std::optional<MediaTime> duration = MediaTime{4, 1};
        std::vector<VideoTrack> videoTracks = {{{1080, 1920}, {}}};
        std::size_t audioTracks = 0;
    };
    struct Drawing {
        MediaRectangle rectangle;
        bool operator==(const Drawing&) const = default;
    };
    struct WrittenClip {
        std::string path;
        VideoSettings settings;
        std::vector<MediaTime> times;
        std::set<const PixelBuffer*> buffers;
        bool finished = false;
    };
    struct Inserted {
        std::string path;
        MediaTime duration, at;
        bool operator==(const Inserted&) const = default;
    };

    std::map<std::string, MediaSize> images;
    std::map<std::string, Clip> clips;
    std::set<std::string> fails, throws;
    std::exception_ptr reason;
    /// A writer is not ready for that many questions before each frame.
    int unreadiness = 0;
    ExportStatus exportStatus = ExportStatus::completed;

    std::vector<std::size_t> thumbnailSizes;
    std::vector<Drawing> filled, drawn;
    int locked = 0, unlocked = 0;
    std::vector<WrittenClip> written;
    std::vector<Inserted> videos, sounds;
    int audioTracks = 0;
    std::optional<ExportJob> job;

    std::unique_ptr<ImageSource> openImage(const std::string& path) override {
        if (!images.contains(path) || fails.contains("open-image")) return nullptr;
        return std::make_unique<Source>(*this, images.at(path));
    }
    std::shared_ptr<PixelBuffer> makePixelBuffer(std::size_t, std::size_t) override {
        return fails.contains("buffer") ? nullptr : std::make_shared<Buffer>(*this);
    }
    std::unique_ptr<ClipWriter> makeClipWriter(const std::string& path) override {
        refuse("writer");
        written.push_back({.path = path, .settings = {}, .times = {}, .buffers = {}});
        return std::make_unique<Writer>(*this, written.size() - 1);
    }
    std::shared_ptr<MediaAsset> openAsset(const std::string& path) override {
        // A clip that was written has the length of its frames.
        for (const WrittenClip& clip : written)
            if (clip.path == path && !clips.contains(path))
                clips[path] = {.duration = MediaTime{static_cast<std::int64_t>(clip.times.size()), 30}};
        return std::make_shared<Asset>(path, clips.contains(path) ? clips[path] : Clip{.duration = std::nullopt});
    }
    std::unique_ptr<MediaComposition> makeComposition() override { return std::make_unique<Composition>(*this); }
    std::unique_ptr<ExportSession> makeExportSession(MediaComposition&) override {
        return fails.contains("session") ? nullptr : std::make_unique<Session>(*this);
    }

private:
    void refuse(const std::string& step) const {
        if (throws.contains(step)) throw ErrorRecord("Framework", 9, step + " failed");
    }

    class Image : public MediaImage {
    public:
        explicit Image(MediaSize size) : size_(size) {}
        std::size_t width() const override { return static_cast<std::size_t>(size_.width); }
        std::size_t height() const override { return static_cast<std::size_t>(size_.height); }

    private:
        MediaSize size_;
    };

    class Source : public ImageSource {
    public:
        Source(FakeMediaFramework& media, MediaSize size) : media_(media), size_(size) {}
        std::unique_ptr<MediaImage> makeThumbnail(std::size_t maximumPixelSize) override {
            media_.thumbnailSizes.push_back(maximumPixelSize);
            return media_.fails.contains("thumbnail") ? nullptr : std::make_unique<Image>(size_);
        }

    private:
        FakeMediaFramework& media_;
        MediaSize size_;
    };

    class Context : public FrameContext {
    public:
        explicit Context(FakeMediaFramework& media) : media_(media) {}
        void fill(const MediaRectangle& rectangle, double gray) override {
            if (gray == 0) media_.filled.push_back({rectangle});
        }
        void draw(const MediaImage&, const MediaRectangle& rectangle) override { media_.drawn.push_back({rectangle}); }

    private:
        FakeMediaFramework& media_;
    };

    class Buffer : public PixelBuffer {
    public:
        explicit Buffer(FakeMediaFramework& media) : media_(media) {}
        bool lockBaseAddress() override {
            ++media_.locked;
            return !media_.fails.contains("lock");
        }
        void unlockBaseAddress() override { ++media_.unlocked; }
        std::unique_ptr<FrameContext> makeContext() override {
            return media_.fails.contains("context") ? nullptr : std::make_unique<Context>(media_);
        }

    private:
        FakeMediaFramework& media_;
    };

    class Writer : public ClipWriter {
    public:
        Writer(FakeMediaFramework& media, std::size_t index) : media_(media), index_(index) {}
        bool addVideoInput(const VideoSettings& settings) override {
            clip().settings = settings;
            return !media_.fails.contains("input");
        }
        bool startWriting() override { return !media_.fails.contains("start"); }
        void startSession() override { askedSince_ = 0; }
        bool isReadyForMoreMediaData() override { return askedSince_++ >= media_.unreadiness; }
        bool append(const std::shared_ptr<const PixelBuffer>& buffer, MediaTime presentationTime) override {
            askedSince_ = 0;
            if (media_.fails.contains("append")) return false;
            clip().times.push_back(presentationTime);
            clip().buffers.insert(buffer.get());
            return true;
        }
        void markAsFinished() override { clip().finished = true; }
        Task<ClipWriterStatus> finishWriting() override {
            co_return media_.fails.contains("finish") ? ClipWriterStatus::failed : ClipWriterStatus::completed;
        }
        std::exception_ptr error() override { return media_.reason; }

    private:
        WrittenClip& clip() { return media_.written[index_]; }
        FakeMediaFramework& media_;
        std::size_t index_;
        int askedSince_ = 0;
    };

    class Asset : public MediaAsset {
    public:
        Asset(std::string file, Clip clip) : path(std::move(file)), clip_(std::move(clip)) {}
        std::string path;
        Task<std::optional<MediaTime>> duration() override { co_return clip_.duration; }
        Task<std::vector<VideoTrack>> videoTracks() override { co_return clip_.videoTracks; }
        Task<std::size_t> audioTrackCount() override { co_return clip_.audioTracks; }

    private:
        Clip clip_;
    };

    class Composition : public MediaComposition {
    public:
        explicit Composition(FakeMediaFramework& media) : media_(media) {}
        bool addVideoTrack() override { return !media_.fails.contains("video-track"); }
        bool addAudioTrack() override {
            if (media_.fails.contains("audio-track")) return false;
            ++media_.audioTracks;
            return true;
        }
        void insertVideo(const std::shared_ptr<MediaAsset>& asset, MediaTime duration, MediaTime at) override {
            media_.refuse("insert-video");
            media_.videos.push_back({pathOf(asset), duration, at});
        }
        void insertAudio(const std::shared_ptr<MediaAsset>& asset, MediaTime duration, MediaTime at) override {
            media_.refuse("insert-audio");
            media_.sounds.push_back({pathOf(asset), duration, at});
        }

    private:
        static std::string pathOf(const std::shared_ptr<MediaAsset>& asset) {
            return dynamic_cast<const Asset&>(*asset).path;
        }
        FakeMediaFramework& media_;
    };

    class Session : public ExportSession {
    public:
        explicit Session(FakeMediaFramework& media) : media_(media) {}
        Task<ExportStatus> exportMovie(ExportJob job) override {
            media_.job = std::move(job);
            if (media_.job->progress) media_.job->progress(1);
            co_return media_.exportStatus;
        }
        std::exception_ptr error() override { return media_.reason; }

    private:
        FakeMediaFramework& media_;
    };
};

} // namespace vesk::test
