#include "VeskPlatform/Apple/QuartzScreenImages.hpp"

#include "VeskPlatform/Apple/QuartzBitmapContext.hpp"
#include "VeskPlatform/Apple/QuartzPngFile.hpp"

namespace vesk {

std::unique_ptr<BitmapContext> QuartzScreenImages::createContext(std::size_t width, std::size_t height) {
    return QuartzBitmapContext::create(width, height);
}

std::unique_ptr<ImageDestination> QuartzScreenImages::createPng(const std::string& path) {
    return QuartzPngFile::create(path);
}

} // namespace vesk
