#pragma once

#include "VeskPlatform/MediaFramework.hpp"

namespace vesk {

/// AVFoundation, with Image I/O for pictures and Core Video for frames.
class AVFoundationMedia : public MediaFramework {
public:
    std::unique_ptr<ImageSource> openImage(const std::string& path) override;
    std::shared_ptr<PixelBuffer> makePixelBuffer(std::size_t width, std::size_t height) override;
    std::unique_ptr<ClipWriter> makeClipWriter(const std::string& path) override;
    std::shared_ptr<MediaAsset> openAsset(const std::string& path) override;
    std::unique_ptr<MediaComposition> makeComposition() override;
    std::unique_ptr<ExportSession> makeExportSession(MediaComposition& composition) override;
};

} // namespace vesk
