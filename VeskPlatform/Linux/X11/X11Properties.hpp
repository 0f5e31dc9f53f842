#pragma once

#include "VeskPlatform/Linux/X11/X11Connection.hpp"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vesk {

/// The names of properties and messages that a server knows by numbers. Asks for each name once.
class X11Atoms {
public:
    explicit X11Atoms(X11Connection& connection) : connection_(connection) {}

    /// Asks for several names in one exchange.
    void prepare(const std::vector<std::string>& names);
    xcb_atom_t operator[](const std::string& name);

private:
    X11Connection& connection_;
    std::map<std::string, xcb_atom_t> known_;
};

/// A question for one property of a window that is on its way; several of them share one exchange.
class X11Property {
public:
    X11Property(X11Connection& connection, xcb_window_t window, xcb_atom_t name);

    /// Numbers of 32 bits, text as it is; empty where the window or the property is not there or of another format.
    std::vector<std::uint32_t> numbers();
    std::string text();

private:
    XcbMemory<xcb_get_property_reply_t> answerOfFormat(std::uint8_t format);

    X11Connection& connection_;
    xcb_get_property_cookie_t cookie_;
};

} // namespace vesk
