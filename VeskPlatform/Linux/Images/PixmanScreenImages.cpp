#include "VeskPlatform/Linux/Images/PixmanScreenImages.hpp"

#include "VeskPlatform/Linux/Images/PixmanCanvas.hpp"
#include "VeskPlatform/Linux/Images/PngFile.hpp"

namespace vesk {

std::unique_ptr<BitmapContext> PixmanScreenImages::createContext(std::size_t width, std::size_t height) {
    return PixmanCanvas::create(width, height);
}

std::unique_ptr<ImageDestination> PixmanScreenImages::createPng(const std::string& path) {
    return PngFile::create(path);
}

} // namespace vesk
