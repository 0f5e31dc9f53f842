#include "VeskPlatform/Linux/Media/ClipComposition.hpp"

#include "VeskPlatform/Linux/Media/ClipAsset.hpp"
#include "VeskPlatform/Linux/Media/StreamReader.hpp"

namespace vesk {
namespace {

ClipComposition::Piece piece(const std::shared_ptr<MediaAsset>& asset, AVMediaType type, MediaTime duration,
                             MediaTime at) {
    const std::string& path = dynamic_cast<const ClipAsset&>(*asset).path();
    const StreamReader opened(path, type); // tells now what cannot be decoded
    return {path, duration, at};
}

} // namespace

bool ClipComposition::addAudioTrack() { return avcodec_find_encoder_by_name("aac") != nullptr; }

void ClipComposition::insertVideo(const std::shared_ptr<MediaAsset>& asset, MediaTime duration, MediaTime at) {
    pictures_.push_back(piece(asset, AVMEDIA_TYPE_VIDEO, duration, at));
}

void ClipComposition::insertAudio(const std::shared_ptr<MediaAsset>& asset, MediaTime duration, MediaTime at) {
    sounds_.push_back(piece(asset, AVMEDIA_TYPE_AUDIO, duration, at));
}

} // namespace vesk
