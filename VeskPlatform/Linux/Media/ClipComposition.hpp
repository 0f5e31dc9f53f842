#pragma once

#include "VeskPlatform/MediaFramework.hpp"

#include <string>
#include <vector>

namespace vesk {

/// Pieces of clips on a timeline. It takes ClipAssets.
class ClipComposition : public MediaComposition {
public:
    /// From the beginning of a file's first track of the kind.
    struct Piece {
        std::string path;
        MediaTime duration, at;
    };

    bool addVideoTrack() override { return true; }
    bool addAudioTrack() override;
    /// Throws FfmpegError where the track cannot be opened.
    void insertVideo(const std::shared_ptr<MediaAsset>& asset, MediaTime duration, MediaTime at) override;
    void insertAudio(const std::shared_ptr<MediaAsset>& asset, MediaTime duration, MediaTime at) override;

    const std::vector<Piece>& pictures() const { return pictures_; }
    const std::vector<Piece>& sounds() const { return sounds_; }

private:
    std::vector<Piece> pictures_, sounds_;
};

} // namespace vesk
