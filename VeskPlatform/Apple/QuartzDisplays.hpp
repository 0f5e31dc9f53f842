#pragma once

#include "VeskPlatform/Displays.hpp"

namespace vesk {

/// The active displays of the window server, in its own order. A picture has the pixels of the display, which on one of
/// high density are more than its points. Without the permission to record the screen it shows no windows of others.
class QuartzDisplays : public Displays {
public:
    std::optional<std::size_t> count() override;
    std::optional<std::vector<DisplayIdentifier>> list(std::size_t capacity) override;
    ScreenRectangle bounds(DisplayIdentifier display) override;
    std::unique_ptr<ScreenImage> capture(DisplayIdentifier display) override;
};

} // namespace vesk
