#pragma once

#include "VeskPlatform/Displays.hpp"
#include "VeskPlatform/Linux/Wayland/WaylandConnection.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace vesk {

/// A monitor and its place in the space that the compositor lays all of them out in, in points.
struct OutputPlace {
    DisplayIdentifier identifier = 0;
    ScreenRectangle bounds;

    bool operator==(const OutputPlace&) const = default;
};

/// What a monitor tells of itself, and xdg-output of it where there is one.
struct OutputFacts {
    ScreenPoint position;
    /// In pixels, before the transform.
    ScreenSize mode;
    /// Pixels to a point.
    std::int32_t scale = 1;
    /// A wl_output.transform.
    std::int32_t transform = 0;
    std::optional<ScreenPoint> logicalPosition{};
    std::optional<ScreenSize> logicalSize{};
};

ScreenRectangle placeOf(const OutputFacts& facts);

/// The monitors of a compositor. The places are those of xdg-output; where the compositor has none, what the monitors
/// themselves tell of their mode, scale and transform.
class OutputLayout {
public:
    explicit OutputLayout(WaylandConnection& connection);
    ~OutputLayout();
    OutputLayout(const OutputLayout&) = delete;
    OutputLayout& operator=(const OutputLayout&) = delete;

    /// As they are now, in the order in which the compositor made them. Throws WaylandError.
    std::vector<OutputPlace> outputs();

private:
    class Registry;
    std::unique_ptr<Registry> registry_;
};

} // namespace vesk
