#pragma once

#include "VeskPlatform/Linux/X11/X11Properties.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

/// What a window tells about itself and its program.
struct X11Window {
    xcb_window_t window = XCB_WINDOW_NONE;
    /// -1 where neither the program nor the server tells.
    std::int32_t processIdentifier = -1;
    std::string instanceName, className;
    /// As GTK names applications; empty for others.
    std::string applicationId;
    /// Not a panel, a desktop and the like.
    bool isForUsers = true;
    bool isMinimized = false;
    /// On the server's clock; none where the program does not say when the user last used it.
    std::optional<std::uint32_t> userTime{};
};

/// The windows of a session by the Extended Window Manager Hints 1.5; without a window manager, the top-level windows
/// that can be seen. Each call reads live state.
class X11Windows {
public:
    explicit X11Windows(X11Connection& connection);

    /// Whether a window manager that keeps to the hints runs now.
    bool areManaged();
    /// In the order in which they were first shown.
    std::vector<xcb_window_t> inOrderOfAge();
    /// The topmost is the last.
    std::vector<xcb_window_t> fromBottomToTop();
    /// The window that has the user's attention. A window manager may name one that is gone.
    std::optional<xcb_window_t> active();
    /// Leaves out windows that do not exist.
    std::vector<X11Window> describe(const std::vector<xcb_window_t>& windows);

    /// Brings a window over others of its kind, without the focus.
    void raise(xcb_window_t window);
    /// Gives a window the attention as if the user had chosen it.
    void activate(xcb_window_t window);

private:
    std::vector<std::uint32_t> rootNumbers(const std::string& name);
    std::vector<xcb_window_t> visibleTopLevels();
    std::optional<xcb_window_t> topLevelWithFocus();
    xcb_window_t topLevelOf(xcb_window_t window);
    std::int32_t processOf(xcb_window_t window);
    bool canRestack();
    std::uint32_t serverTime();
    void tellWindowManager(const std::string& message, xcb_window_t window, const std::vector<std::uint32_t>& data);

    X11Connection& connection_;
    X11Atoms atoms_;
    xcb_window_t clockWindow_ = XCB_WINDOW_NONE;
    std::optional<std::uint32_t> clock_;
};

} // namespace vesk
