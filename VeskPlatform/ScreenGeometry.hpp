#pragma once

namespace vesk {

// Places in the one space that all displays share: points, x to the right and y downwards, with the origin at the top
// left corner of the main display.

struct ScreenPoint {
    double x = 0;
    double y = 0;

    bool operator==(const ScreenPoint&) const = default;
};

struct ScreenSize {
    double width = 0;
    double height = 0;

    bool operator==(const ScreenSize&) const = default;
};

struct ScreenRectangle {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    bool operator==(const ScreenRectangle&) const = default;
};

} // namespace vesk
