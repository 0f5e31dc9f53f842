#pragma once

#include "VeskPlatform/MediaFramework.hpp"

#include <string>
#include <utility>

namespace vesk {

/// A clip in a file, which is opened anew for each question. One that cannot be opened has neither length nor tracks.
class ClipAsset : public MediaAsset {
public:
    explicit ClipAsset(std::string path) : path_(std::move(path)) {}

    Task<std::optional<MediaTime>> duration() override;
    Task<std::vector<VideoTrack>> videoTracks() override;
    Task<std::size_t> audioTrackCount() override;
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

} // namespace vesk
