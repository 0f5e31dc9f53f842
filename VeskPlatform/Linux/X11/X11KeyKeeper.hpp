#pragma once

#include "VeskPlatform/Linux/FileDescriptor.hpp"

#include <chrono>
#include <cstdint>
#include <string>
#include <xcb/xcb.h>

namespace vesk {

/// The meaning that a key was lent.
struct KeyLoan {
    xcb_keycode_t key = 0;
    xcb_keysym_t symbol = 0, shifted = 0;
};

/// How long a meaning lasts after its use: programs ask for it when they come to the key's event, and one that is busy
/// comes to it late.
constexpr std::chrono::milliseconds meaningLasts{150};

void setMeaning(xcb_connection_t* connection, xcb_keycode_t key, xcb_keysym_t symbol, xcb_keysym_t shifted);
/// Leaves a key alone that has got another meaning since.
void takeMeaningBack(xcb_connection_t* connection, const KeyLoan& loan);

/// A process that takes back what this one has lent, should this one end without doing so, in whatever way. It lives as
/// long as the object does, in a session of its own.
class X11KeyKeeper {
public:
    explicit X11KeyKeeper(const std::string& display);

    /// Told before the key gets its meaning.
    void note(const KeyLoan& loan);
    /// Nothing is lent any more.
    void release();

private:
    void send(const KeyLoan& loan) const;

    FileDescriptor line_;
};

} // namespace vesk
