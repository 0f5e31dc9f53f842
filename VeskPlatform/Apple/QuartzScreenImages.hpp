#pragma once

#include "VeskPlatform/ScreenImages.hpp"

namespace vesk {

/// Composes pictures with Core Graphics and writes them with Image I/O. A picture is scaled with the quality that the
/// system has for it. Takes QuartzImages only.
class QuartzScreenImages : public ScreenImages {
public:
    std::unique_ptr<BitmapContext> createContext(std::size_t width, std::size_t height) override;
    std::unique_ptr<ImageDestination> createPng(const std::string& path) override;
};

} // namespace vesk
