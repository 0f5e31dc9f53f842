#pragma once

#include "VeskPlatform/Portable/FileDescriptor.hpp"

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>
#include <xcb/xcb.h>

namespace vesk {

/// The meaning that a key was lent.
struct KeyLoan {
    xcb_keycode_t key = 0;
    xcb_keysym_t symbol = 0, shifted = 0;
};

/// An input of the XTest extension, such as a key that goes up.
struct FakeInput {
    std::uint8_t type = 0, detail = 0;
};

/// How long a meaning lasts after its use: programs ask for it when they come to the key's event, and one that is busy
/// comes to it late.
constexpr std::chrono::milliseconds meaningLasts{150};

void setMeaning(xcb_connection_t* connection, xcb_keycode_t key, xcb_keysym_t symbol, xcb_keysym_t shifted);
/// Leaves a key alone that has got another meaning since.
void takeMeaningBack(xcb_connection_t* connection, const KeyLoan& loan);

/// A process that takes back what this one has lent and lets go of what it holds, should this one end without doing so,
/// in whatever way. It lives as long as the object does, in a session of its own.
class X11KeyKeeper {
public:
    explicit X11KeyKeeper(const std::string& display);

    /// Told before the key gets its meaning.
    void note(const KeyLoan& loan);
    /// Told before something goes down: what brings it up again, in this order.
    void note(const std::vector<FakeInput>& letGo);
    /// Nothing is lent or held any more.
    void release();

private:
    /// One of both, or neither where all is over.
    struct Message {
        KeyLoan loan{};
        FakeInput letGo{};
    };
    struct Duties {
        std::vector<KeyLoan> loans;
        std::vector<FakeInput> letGo;
    };

    static void add(const Message& message, Duties& duties);
    static Duties dutiesAtTheEnd(int line);
    [[noreturn]] static void keep(const std::string& display, int line);
    void send(const Message& message) const;

    FileDescriptor line_;
};

} // namespace vesk
