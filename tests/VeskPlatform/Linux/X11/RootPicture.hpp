#pragma once

#include "VeskPlatform/Linux/X11/X11Connection.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace vesk::test {

/// 0xRRGGBB of a place on the screen.
using Painting = std::function<std::uint32_t(int x, int y)>;

/// A picture in which no two places near each other look alike.
inline std::uint32_t testPattern(int x, int y) {
    const auto a = static_cast<std::uint32_t>(x), b = static_cast<std::uint32_t>(y);
    return (a * 7 + b) % 256 << 16U | (a + b * 5) % 256 << 8U | (a * 3 + b * 11) % 256;
}

/// Paints the ground of a screen whose pixels are 0xRRGGBB in this machine's byte order.
inline void paintRoot(const std::string& display, const Painting& painting) {
    X11Connection connection(display);
    const std::uint16_t width = connection.screen().width_in_pixels, height = connection.screen().height_in_pixels;
    const xcb_pixmap_t ground = xcb_generate_id(connection.get());
    const xcb_gcontext_t tool = xcb_generate_id(connection.get());
    xcb_create_pixmap(connection.get(), connection.screen().root_depth, ground, connection.root(), width, height);
    xcb_create_gc(connection.get(), tool, ground, 0, nullptr);
    std::vector<std::uint32_t> row(width);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) row[static_cast<std::size_t>(x)] = painting(x, y);
        xcb_put_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, ground, tool, width, 1, 0,
                      static_cast<std::int16_t>(y), 0, connection.screen().root_depth,
                      static_cast<std::uint32_t>(row.size() * 4), reinterpret_cast<const std::uint8_t*>(row.data()));
    }
    xcb_change_window_attributes(connection.get(), connection.root(), XCB_CW_BACK_PIXMAP, &ground);
    xcb_clear_area(connection.get(), 0, connection.root(), 0, 0, width, height);
    connection.synchronize();
}

} // namespace vesk::test
