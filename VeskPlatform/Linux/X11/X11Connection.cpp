#include "VeskPlatform/Linux/X11/X11Connection.hpp"

#include "VeskPlatform/Linux/X11/X11Error.hpp"

#include <algorithm>
#include <cerrno>
#include <future>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <xcb/xcbext.h>

namespace vesk {

namespace {

std::string seconds(std::chrono::milliseconds patience) {
    const auto whole = std::chrono::ceil<std::chrono::seconds>(patience).count();
    return std::to_string(whole) + (whole == 1 ? " second" : " seconds");
}

const xcb_screen_t* screenOf(xcb_connection_t* connection, int number) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; number > 0 && screens.rem > 1; --number) xcb_screen_next(&screens);
    return screens.data;
}

} // namespace

/// xcb waits without end for the first words of a server, so that another thread has to do it. One that a silent server
/// holds is left behind.
X11Connection::Handle X11Connection::connect(const std::string& display, Milliseconds patience, int& screenNumber) {
    struct Opened {
        Handle handle;
        int screenNumber = 0;
    };
    if (display.empty())
        throw X11Error(X11Error::Kind::unreachable,
                       "There is no display: the variable DISPLAY is not set. Run this in a desktop session.");
    std::promise<Opened> promise;
    auto future = promise.get_future();
    std::thread([display, result = std::move(promise)]() mutable {
        Opened opened;
        opened.handle.reset(xcb_connect(display.c_str(), &opened.screenNumber));
        result.set_value(std::move(opened));
    }).detach();
    if (future.wait_for(patience) != std::future_status::ready)
        throw X11Error(X11Error::Kind::silent,
                       "The display " + display + " did not answer within " + seconds(patience) + ".");
    Opened opened = future.get();
    if (xcb_connection_has_error(opened.handle.get()) != 0)
        throw X11Error(X11Error::Kind::unreachable, "The display " + display
                                                        + " cannot be reached. Check that the variable DISPLAY names a "
                                                          "running X server which this user may use.");
    screenNumber = opened.screenNumber;
    return std::move(opened.handle);
}

X11Connection::X11Connection(const std::string& display, Milliseconds patience)
    : display_(display), patience_(patience) {
    int number = 0;
    connection_ = connect(display, patience, number);
    screen_ = screenOf(connection_.get(), number);
    if (screen_ == nullptr) throw X11Error(X11Error::Kind::incapable, "The display " + display + " has no screen.");
}

bool X11Connection::isLocal() const {
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    return ::getpeername(xcb_get_file_descriptor(get()), generic, &length) == 0 && address.ss_family == AF_UNIX;
}

void X11Connection::requireAlive() const {
    if (xcb_connection_has_error(get()) != 0)
        throw X11Error(X11Error::Kind::lost, "The connection to the display " + display_ + " was closed.");
}

void X11Connection::throwSilent() const {
    throw X11Error(X11Error::Kind::silent,
                   "The display " + display_ + " did not answer within " + seconds(patience_) + ".");
}

/// The library waits without end for room in the socket, of which a server that has stopped leaves none.
void X11Connection::flush() {
    pollfd socket{xcb_get_file_descriptor(get()), POLLOUT, 0};
    if (xcb_connection_has_error(get()) == 0 && ::poll(&socket, 1, static_cast<int>(patience_.count())) == 0)
        throwSilent();
    xcb_flush(get());
    requireAlive();
}

bool X11Connection::waitForBytes(Deadline deadline) const {
    const auto left = std::chrono::ceil<Milliseconds>(deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0) return false;
    pollfd socket{xcb_get_file_descriptor(get()), POLLIN, 0};
    return ::poll(&socket, 1, static_cast<int>(left.count())) != 0; // an interrupt is a reason to look again
}

void* X11Connection::waitFor(unsigned int sequence) {
    flush();
    const Deadline deadline = std::chrono::steady_clock::now() + patience_;
    void* result = nullptr;
    xcb_generic_error_t* refusal = nullptr;
    while (xcb_poll_for_reply(get(), sequence, &result, &refusal) == 0) {
        if (!waitForBytes(deadline)) throwSilent();
    }
    std::free(refusal);
    if (result == nullptr) requireAlive();
    return result;
}

void X11Connection::synchronize() { answer<xcb_get_input_focus_reply_t>(xcb_get_input_focus(get())); }

bool X11Connection::succeeded(xcb_void_cookie_t cookie) {
    synchronize(); // its answer comes after the refusal
    void* none = nullptr;
    xcb_generic_error_t* refusal = nullptr;
    xcb_poll_for_reply(get(), cookie.sequence, &none, &refusal);
    const XcbMemory<xcb_generic_error_t> held(refusal);
    return refusal == nullptr;
}

void X11Connection::handOut(const xcb_generic_event_t& event) const {
    for (const EventListener& listener : listeners_) listener(event);
}

void X11Connection::dispatchEvents() {
    while (const XcbMemory<xcb_generic_event_t> event{xcb_poll_for_event(get())}) handOut(*event);
    requireAlive();
}

void X11Connection::dispatchKnownEvents() {
    while (const XcbMemory<xcb_generic_event_t> event{xcb_poll_for_queued_event(get())}) handOut(*event);
}

bool X11Connection::dispatchUntil(const std::function<bool()>& condition) {
    flush();
    const Deadline deadline = std::chrono::steady_clock::now() + patience_;
    for (dispatchEvents(); !condition(); dispatchEvents()) {
        if (!waitForBytes(deadline)) return false;
    }
    return true;
}

} // namespace vesk
