#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <chrono>
#include <memory>
#include <string>
#include <wayland-client.h>

namespace vesk {

/// A compositor that cannot be reached, or is no longer there. Domain "VeskWayland", the code an errno.
class WaylandError : public ErrorRecord {
public:
    WaylandError(int errnoValue, std::string description)
        : ErrorRecord("VeskWayland", errnoValue, std::move(description)) {}
};

/// A connection to a compositor. Nothing waits for longer than its patience.
class WaylandConnection {
public:
    /// `display` is as in WAYLAND_DISPLAY. Throws WaylandError.
    WaylandConnection(std::string display, std::chrono::milliseconds patience);

    wl_display* get() const { return display_.get(); }
    /// Waits until the compositor has handled all requests, and handles the events that came until then. Throws
    /// WaylandError.
    void roundtrip();

private:
    struct Disconnect {
        void operator()(wl_display* display) const { wl_display_disconnect(display); }
    };
    using Deadline = std::chrono::steady_clock::time_point;

    void dispatch(Deadline deadline);
    void readEvents(Deadline deadline);
    [[noreturn]] void fail(int errnoValue) const;

    std::string name_;
    std::chrono::milliseconds patience_;
    std::unique_ptr<wl_display, Disconnect> display_;
};

} // namespace vesk
