#pragma once

#include "VeskPlatform/Displays.hpp"
#include "VeskPlatform/Linux/X11/X11Connection.hpp"

namespace vesk {

/// The monitors of an X screen (RandR 1.5), which all show a part of the root window. A server without the extension
/// has one, the whole screen. Identifiers are the numbers of the monitors' names, which last as long as the server.
class X11Displays : public Displays {
public:
    explicit X11Displays(X11Connection& connection) : connection_(connection) {}

    std::optional<std::size_t> count() override;
    std::optional<std::vector<DisplayIdentifier>> list(std::size_t capacity) override;
    ScreenRectangle bounds(DisplayIdentifier display) override;
    /// Without the pointer. What a monitor shows of places outside the screen is transparent.
    std::unique_ptr<ScreenImage> capture(DisplayIdentifier display) override;

private:
    struct Monitor {
        DisplayIdentifier identifier = 0;
        int x = 0, y = 0, width = 0, height = 0;
    };

    std::optional<std::vector<Monitor>> monitors();
    std::optional<Monitor> monitor(DisplayIdentifier display);
    std::optional<Monitor> wholeScreen();
    bool hasMonitors();

    X11Connection& connection_;
};

} // namespace vesk
