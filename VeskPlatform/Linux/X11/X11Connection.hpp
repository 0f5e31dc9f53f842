#pragma once

#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>
#include <xcb/xcb.h>

namespace vesk {

struct XcbMemoryRelease {
    void operator()(void* memory) const { std::free(memory); }
};
/// An answer or an event, which xcb has allocated.
template <class Answer> using XcbMemory = std::unique_ptr<Answer, XcbMemoryRelease>;

/// One connection to an X server. What the server refuses is an absent answer and never ends the process. Whatever
/// waits throws X11Error where the server goes away or is silent for longer than the connection's patience.
class X11Connection {
public:
    using Milliseconds = std::chrono::milliseconds;
    using EventListener = std::function<void(const xcb_generic_event_t& event)>;

    /// `display` as the variable DISPLAY holds it, empty where there is none. Throws X11Error.
    explicit X11Connection(const std::string& display, Milliseconds patience = std::chrono::seconds(5));

    xcb_connection_t* get() const { return connection_.get(); }
    const xcb_screen_t& screen() const { return *screen_; }
    xcb_window_t root() const { return screen_->root; }
    /// Whether the server can take descriptors and memory of this machine.
    bool isLocal() const;

    /// The answer to a request; null where the server refused it, as it does for a window that is gone.
    template <class Answer, class Cookie> XcbMemory<Answer> answer(Cookie cookie) {
        return XcbMemory<Answer>(static_cast<Answer*>(waitFor(cookie.sequence)));
    }
    /// Whether the server did what a checked request without an answer asks.
    bool succeeded(xcb_void_cookie_t cookie);
    /// Hands all requests to the system. Throws X11Error where the connection is gone.
    void flush();
    /// Waits until the server has done all that was asked.
    void synchronize();

    /// Sees every event that comes from now on.
    void listen(EventListener listener) { listeners_.push_back(std::move(listener)); }
    /// Hands the events that have come to the listeners.
    void dispatchEvents();
    /// The same for those that came along with answers, which costs no look at the connection.
    void dispatchKnownEvents();
    /// The same, until the condition holds; false where it did not within the patience.
    bool dispatchUntil(const std::function<bool()>& condition);

private:
    using Deadline = std::chrono::steady_clock::time_point;
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };
    using Handle = std::unique_ptr<xcb_connection_t, Disconnect>;

    static Handle connect(const std::string& display, Milliseconds patience, int& screenNumber);
    void* waitFor(unsigned int sequence);
    bool waitForBytes(Deadline deadline) const;
    void requireAlive() const;
    void handOut(const xcb_generic_event_t& event) const;
    [[noreturn]] void throwSilent() const;

    std::string display_;
    Milliseconds patience_;
    Handle connection_;
    const xcb_screen_t* screen_ = nullptr;
    std::vector<EventListener> listeners_;
};

} // namespace vesk
