#pragma once

#include "VeskPlatform/Linux/Desktop/PixelImage.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vesk {

/// Pixels as in PixelImage, row by row without gaps.
struct Picture {
    std::size_t width = 0, height = 0;
    bool isOpaque = false;
    std::vector<std::uint32_t> pixels;
};

/// The picture in a PNG file; null where the file cannot be read, is none, or has more than 2^28 pixels.
std::shared_ptr<const Picture> readPng(const std::string& path);

/// A part of a picture, which it keeps alive. The part lies within the picture.
class PicturePart : public PixelImage {
public:
    PicturePart(std::shared_ptr<const Picture> whole, std::size_t left, std::size_t top, std::size_t width,
                std::size_t height);

    std::size_t width() const override { return width_; }
    std::size_t height() const override { return height_; }
    const std::uint32_t* pixels() const override { return first_; }
    std::size_t stride() const override { return whole_->width; }
    bool isOpaque() const override { return whole_->isOpaque; }

private:
    std::shared_ptr<const Picture> whole_;
    const std::uint32_t* first_;
    std::size_t width_, height_;
};

} // namespace vesk
