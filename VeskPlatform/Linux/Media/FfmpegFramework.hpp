#pragma once

#include "VeskPlatform/Linux/Media/LoadedMedia.hpp"
#include "VeskPlatform/MediaFramework.hpp"

namespace vesk {

/// FFmpeg's libraries, with libheif for HEIF pictures. What they have to say goes to the log.
class FfmpegFramework : public MediaFramework {
public:
    explicit FfmpegFramework(const MediaOptions& options);

    std::unique_ptr<ImageSource> openImage(const std::string& path) override;
    std::shared_ptr<PixelBuffer> makePixelBuffer(std::size_t width, std::size_t height) override;
    std::unique_ptr<ClipWriter> makeClipWriter(const std::string& path) override;
    std::shared_ptr<MediaAsset> openAsset(const std::string& path) override;
    std::unique_ptr<MediaComposition> makeComposition() override;
    std::unique_ptr<ExportSession> makeExportSession(MediaComposition& composition) override;
};

} // namespace vesk
