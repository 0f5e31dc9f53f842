#pragma once

#include "VeskPlatform/Linux/Desktop/PixelImage.hpp"
#include "VeskPlatform/Linux/X11/X11Connection.hpp"

#include <memory>

namespace vesk {

/// Pixels of the root window.
struct ScreenArea {
    int x = 0, y = 0, width = 0, height = 0;

    bool operator==(const ScreenArea&) const = default;
};

/// What the screen shows in an area, without the pointer; null where the server does not give it or has a picture
/// format without direct colours. Pixels outside the screen are transparent. A server on this machine writes into
/// shared memory (MIT-SHM 1.2); from another one the picture comes over the connection.
std::unique_ptr<PixelImage> captureScreen(X11Connection& connection, const ScreenArea& area);

} // namespace vesk
