#include "VeskPlatform/Linux/Chromium/PrintStyle.hpp"

#include <cstdio>
#include <initializer_list>

namespace vesk {

std::string paperStyle(double width, double height) {
    char size[96];
    (void)std::snprintf(size, sizeof size, "@page { size: %gpt %gpt !important; margin: 0 !important;", width, height);
    std::string style = size;
    for (const char* edge : {"top", "bottom"})
        for (const char* place : {"left-corner", "left", "center", "right", "right-corner"})
            style += std::string(" @") + edge + "-" + place + " { content: none !important; }";
    for (const char* edge : {"left", "right"})
        for (const char* place : {"top", "middle", "bottom"})
            style += std::string(" @") + edge + "-" + place + " { content: none !important; }";
    return style + " }";
}

} // namespace vesk
