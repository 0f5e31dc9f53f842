#pragma once

#include "VeskPlatform/Displays.hpp"
#include "VeskPlatform/InputEvents.hpp"
#include "VeskPlatform/RunningApplications.hpp"

namespace vesk {

/// The ports that one connection to a window system serves. The images of its displays are PixelImages.
class WindowSystem {
public:
    virtual ~WindowSystem() = default;

    virtual Displays& displays() = 0;
    virtual InputEvents& inputEvents() = 0;
    virtual RunningApplications& runningApplications() = 0;
};

} // namespace vesk
