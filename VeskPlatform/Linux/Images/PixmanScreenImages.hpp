#pragma once

#include "VeskPlatform/ScreenImages.hpp"

namespace vesk {

/// Pictures through pixman and libpng.
class PixmanScreenImages : public ScreenImages {
public:
    std::unique_ptr<BitmapContext> createContext(std::size_t width, std::size_t height) override;
    std::unique_ptr<ImageDestination> createPng(const std::string& path) override;
};

} // namespace vesk
