#include "VeskPlatform/Linux/Wayland/WaylandConnection.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <poll.h>
#include <utility>

namespace vesk {
namespace {

struct CallbackRelease {
    void operator()(wl_callback* callback) const { wl_callback_destroy(callback); }
};

void noteDone(void* data, wl_callback*, std::uint32_t) { *static_cast<bool*>(data) = true; }

constexpr wl_callback_listener doneListener{.done = noteDone};

void sayNothing(const char*, va_list) {}

/// The library writes what is amiss to standard error, where only the line of the failure belongs.
wl_display* connectSilently(const char* display) {
    wl_log_set_handler_client(sayNothing);
    return wl_display_connect(display);
}

int millisecondsUntil(std::chrono::steady_clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
}

} // namespace

WaylandConnection::WaylandConnection(std::string display, std::chrono::milliseconds patience)
    : name_(std::move(display)), patience_(patience), display_(connectSilently(name_.c_str())) {
    if (!display_)
        throw WaylandError(errno, "The Wayland display \"" + name_ + "\" cannot be reached: " + std::strerror(errno)
                                      + ". Run within a desktop session (WAYLAND_DISPLAY, XDG_RUNTIME_DIR).");
}

void WaylandConnection::fail(int errnoValue) const {
    throw WaylandError(errnoValue, errnoValue == ETIMEDOUT
                                       ? "The Wayland display \"" + name_ + "\" does not answer."
                                       : "The Wayland display \"" + name_ + "\" is gone: " + std::strerror(errnoValue));
}

void WaylandConnection::roundtrip() {
    bool isDone = false;
    const std::unique_ptr<wl_callback, CallbackRelease> callback(wl_display_sync(display_.get()));
    wl_callback_add_listener(callback.get(), &doneListener, &isDone);
    const Deadline deadline = std::chrono::steady_clock::now() + patience_;
    while (!isDone) dispatch(deadline);
}

/// The library's own waiting functions have no limit, so the steps of one are taken here (wl_display_prepare_read).
void WaylandConnection::dispatch(Deadline deadline) {
    while (wl_display_prepare_read(display_.get()) != 0)
        if (wl_display_dispatch_pending(display_.get()) < 0) fail(errno);
    readEvents(deadline);
    if (wl_display_dispatch_pending(display_.get()) < 0) fail(errno);
}

void WaylandConnection::readEvents(Deadline deadline) {
    // A connection that takes no more requests is polled for room as well.
    const bool isFull = wl_display_flush(display_.get()) < 0 && errno == EAGAIN;
    pollfd event{wl_display_get_fd(display_.get()), static_cast<short>(isFull ? POLLIN | POLLOUT : POLLIN), 0};
    const int ready = ::poll(&event, 1, millisecondsUntil(deadline));
    if (ready <= 0 && !(ready < 0 && errno == EINTR)) {
        const int reason = ready == 0 ? ETIMEDOUT : errno;
        wl_display_cancel_read(display_.get());
        fail(reason);
    }
    if (wl_display_read_events(display_.get()) < 0) fail(errno);
}

} // namespace vesk
