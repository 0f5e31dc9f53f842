#pragma once

#include <cstdint>
#include <png.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace vesk::test {

/// Writes a PNG of 0xAARRGGBB pixels with straight alpha, or without alpha at all.
inline void writePng(const std::string& path, std::uint32_t width, std::uint32_t height, bool hasAlpha,
                     const std::vector<std::uint32_t>& pixels) {
    const std::uint32_t channels = hasAlpha ? 4 : 3;
    std::vector<std::uint8_t> bytes;
    for (const std::uint32_t pixel : pixels)
        for (std::uint32_t i = 0; i < channels; ++i)
            bytes.push_back(static_cast<std::uint8_t>(i == 3 ? pixel >> 24 : pixel >> (16 - 8 * i)));
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = width;
    image.height = height;
    image.format = hasAlpha ? PNG_FORMAT_RGBA : PNG_FORMAT_RGB;
    if (png_image_write_to_file(&image, path.c_str(), 0, bytes.data(), 0, nullptr) == 0)
        throw std::runtime_error("cannot write " + path);
}

} // namespace vesk::test
