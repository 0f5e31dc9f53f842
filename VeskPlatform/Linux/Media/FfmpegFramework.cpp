#include "VeskPlatform/Linux/Media/FfmpegFramework.hpp"

#include "VeskPlatform/Linux/Media/ClipAsset.hpp"
#include "VeskPlatform/Linux/Media/MovieExport.hpp"
#include "VeskPlatform/Linux/Media/StillClipWriter.hpp"
#include "VeskPlatform/Linux/Media/StillImage.hpp"

#include <new>

namespace vesk {

/// The libraries' own words would go to standard error; failures carry what matters of them.
FfmpegFramework::FfmpegFramework(const MediaOptions&) { av_log_set_level(AV_LOG_QUIET); }

std::unique_ptr<ImageSource> FfmpegFramework::openImage(const std::string& path) { return openStillImage(path); }

std::shared_ptr<PixelBuffer> FfmpegFramework::makePixelBuffer(std::size_t width, std::size_t height) {
    try {
        return std::make_shared<PixelFrame>(width, height);
    } catch (const FfmpegError&) {
    } catch (const std::bad_alloc&) {
    }
    return nullptr;
}

std::unique_ptr<ClipWriter> FfmpegFramework::makeClipWriter(const std::string& path) {
    return std::make_unique<StillClipWriter>(path);
}

std::shared_ptr<MediaAsset> FfmpegFramework::openAsset(const std::string& path) {
    return std::make_shared<ClipAsset>(path);
}

std::unique_ptr<MediaComposition> FfmpegFramework::makeComposition() { return std::make_unique<ClipComposition>(); }

std::unique_ptr<ExportSession> FfmpegFramework::makeExportSession(MediaComposition& composition) {
    if (avcodec_find_encoder_by_name("libx264") == nullptr) return nullptr;
    return std::make_unique<MovieExport>(dynamic_cast<const ClipComposition&>(composition));
}

} // namespace vesk
