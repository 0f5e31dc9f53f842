#pragma once

#include "VeskPlatform/Linux/Media/FfmpegObjects.hpp"
#include "VeskPlatform/Linux/Media/Orientation.hpp"
#include "VeskPlatform/MediaFramework.hpp"

#include <memory>
#include <string>

namespace vesk {

/// The most pixels of a picture that is decoded whole, so that its memory stays bounded: 400 MB. A JPEG of more is
/// decoded at a half, a quarter or an eighth of its size.
inline constexpr std::int64_t mostDecodedPixels = 100'000'000;

/// A decoded picture. It is scaled only once, when it is drawn; until then its size says what it stands for.
class StillImage : public MediaImage {
public:
    StillImage(FramePointer stored, Orientation orientation, std::size_t maximumPixelSize);

    std::size_t width() const override { return width_; }
    std::size_t height() const override { return height_; }
    /// As it is stored, not yet upright.
    const AVFrame& stored() const { return *stored_; }
    Orientation orientation() const { return orientation_; }

private:
    FramePointer stored_;
    Orientation orientation_;
    std::size_t width_ = 0, height_ = 0;
};

/// A JPEG, PNG, GIF (its first picture), WebP or HEIF file; null where it is none.
std::unique_ptr<ImageSource> openStillImage(const std::string& path);

} // namespace vesk
