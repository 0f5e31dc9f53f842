#include "VeskPlatform/Linux/Images/PixmanScreenImages.hpp"

/// A ScreenImagesFactory.
extern "C" __attribute__((visibility("default"))) vesk::ScreenImages* veskScreenImages() {
    return new vesk::PixmanScreenImages();
}
