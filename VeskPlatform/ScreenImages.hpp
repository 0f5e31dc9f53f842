#pragma once

#include "VeskPlatform/Displays.hpp"

#include <cstddef>
#include <memory>
#include <string>

namespace vesk {

/// A canvas of 8-bit red, green, blue and alpha in the device's colours, transparent at first, with its origin at the
/// top left and y growing downwards.
class BitmapContext {
public:
    virtual ~BitmapContext() = default;
    /// Puts a picture upright into a rectangle, scaled to it; its pixels replace what was there. What lies outside the
    /// canvas is cut off.
    virtual void draw(const ScreenImage& image, const ScreenRectangle& rectangle) = 0;
    /// The canvas as a picture; null where it cannot be had. The context is used up.
    virtual std::unique_ptr<ScreenImage> makeImage() = 0;
};

/// A PNG file (ISO/IEC 15948) that is being written.
class ImageDestination {
public:
    virtual ~ImageDestination() = default;
    /// Writes the picture and ends the file. False where that failed; what was written stays.
    virtual bool finalize(const ScreenImage& image) = 0;
};

/// Composes pictures of displays and writes them. Called on the main executor; it takes the images of the session's
/// Displays.
class ScreenImages {
public:
    virtual ~ScreenImages() = default;
    /// In pixels, each at least 1; null where there is no memory for it.
    virtual std::unique_ptr<BitmapContext> createContext(std::size_t width, std::size_t height) = 0;
    /// Opens the file, replacing an existing one; null where it cannot be opened.
    virtual std::unique_ptr<ImageDestination> createPng(const std::string& path) = 0;
};

} // namespace vesk
