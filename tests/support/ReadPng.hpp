#pragma once

#include <cstdint>
#include <png.h>
#include <string>
#include <vector>

namespace vesk::test {

struct ReadPng {
    std::size_t width = 0, height = 0;
    bool hasAlpha = false;
    /// 0xAARRGGBB, not multiplied.
    std::vector<std::uint32_t> pixels;
};

/// A picture without pixels where the file is none.
inline ReadPng readPng(const std::string& path) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, path.c_str()) == 0) return {};
    ReadPng result{image.width, image.height, (image.format & PNG_FORMAT_FLAG_ALPHA) != 0, {}};
    image.format = PNG_FORMAT_BGRA;
    result.pixels.resize(result.width * result.height);
    png_image_finish_read(&image, nullptr, result.pixels.data(), 0, nullptr);
    return result;
}

} // namespace vesk::test
