#include "VeskPlatform/Linux/Media/MovieExport.hpp"

#include "VeskPlatform/Linux/Media/MovieWriter.hpp"
#include "VeskPlatform/Linux/Media/PictureTrack.hpp"
#include "VeskPlatform/Linux/Media/SoundTrack.hpp"

#include <optional>

namespace vesk {
namespace {

/// Sound and the encoder that it goes to.
struct Sound {
    Encoder encoder;
    SoundTrack track;
    int index;
};

AVRational rational(const MediaTime& time) { return {static_cast<int>(time.value), time.timescale}; }

/// One movie on its way into a file.
class Export {
public:
    Export(const ClipComposition& composition, const ExportJob& job)
        : job_(job), pictures_(composition.pictures(), job.videoComposition), writer_(job.outputPath),
          video_(makeVideoEncoder(static_cast<int>(job.videoComposition.renderSize.width),
                                  static_cast<int>(job.videoComposition.renderSize.height),
                                  rational(job.videoComposition.frameDuration), {})) {
        videoIndex_ = writer_.addTrack(video_.codec());
        if (!composition.sounds().empty()) addSound(composition);
        writer_.begin(job.optimizesForNetworkUse);
    }

    void run() {
        for (std::int64_t frame = 0; frame < pictures_.frameCount(); ++frame) {
            encodePicture(&pictures_.next());
            encodeSoundUpTo(static_cast<double>(frame + 1) * av_q2d(video_.codec().time_base));
            tell(frame + 1);
        }
        encodePicture(nullptr);
        if (sound_) finishSound();
        writer_.end();
    }

private:
    void addSound(const ClipComposition& composition) {
        Encoder encoder = makeAudioEncoder();
        const double seconds = static_cast<double>(pictures_.frameCount()) * av_q2d(video_.codec().time_base);
        SoundTrack track(composition.sounds(), encoder.codec(), seconds);
        const int index = writer_.addTrack(encoder.codec());
        sound_.emplace(Sound{std::move(encoder), std::move(track), index});
    }

    void encodePicture(const AVFrame* frame) {
        video_.encode(frame, [&](AVPacket& packet) {
            if (packet.duration == 0) packet.duration = 1;
            writer_.write(packet, videoIndex_, video_.codec().time_base);
        });
    }

    void encodeSound(const AVFrame* frame) {
        sound_->encoder.encode(
            frame, [&](AVPacket& packet) { writer_.write(packet, sound_->index, sound_->encoder.codec().time_base); });
    }

    void encodeSoundUpTo(double seconds) {
        if (!sound_) return;
        const auto due = static_cast<std::int64_t>(seconds * sound_->encoder.codec().sample_rate);
        while (sound_->track.position() < due) {
            const FramePointer frame = sound_->track.next();
            if (!frame) return;
            encodeSound(frame.get());
        }
    }

    void finishSound() {
        while (const FramePointer frame = sound_->track.next()) encodeSound(frame.get());
        encodeSound(nullptr);
    }

    void tell(std::int64_t frames) const {
        if (job_.progress) job_.progress(static_cast<double>(frames) / static_cast<double>(pictures_.frameCount()));
    }

    const ExportJob& job_;
    PictureTrack pictures_;
    MovieWriter writer_;
    Encoder video_;
    int videoIndex_ = 0;
    std::optional<Sound> sound_;
};

} // namespace

Task<ExportStatus> MovieExport::exportMovie(ExportJob job) {
    try {
        Export(composition_, job).run();
        co_return ExportStatus::completed;
    } catch (const FfmpegError&) {
        error_ = std::current_exception();
    }
    co_return ExportStatus::failed;
}

} // namespace vesk
