#pragma once

#include "VeskPlatform/Linux/X11/X11Connection.hpp"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>
#include <xkbcommon/xkbcommon.h>

namespace vesk {

/// What is switched on at a keyboard while nobody holds a key: Caps Lock, Num Lock, the chosen layout.
struct KeyboardLocks {
    std::uint32_t modifiers = 0;
    std::uint32_t layout = 0;

    auto operator<=>(const KeyboardLocks&) const = default;
};

/// A key, and those to hold down before it.
struct KeyStroke {
    xcb_keycode_t key = 0;
    std::vector<xcb_keycode_t> modifiers{};

    bool operator==(const KeyStroke&) const = default;
};

struct XkbRelease {
    void operator()(xkb_context* context) const { xkb_context_unref(context); }
    void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
    void operator()(xkb_state* state) const { xkb_state_unref(state); }
};
template <class T> using XkbHandle = std::unique_ptr<T, XkbRelease>;

/// What the keys of one keyboard mean: a copy of the server's table at the time of its making.
class X11Keymap {
public:
    /// Of an X input device. Throws X11Error where the server does not tell.
    X11Keymap(X11Connection& connection, std::int32_t device);
    /// Of a keymap that stands by itself.
    explicit X11Keymap(XkbHandle<xkb_keymap> keymap);

    /// The simplest stroke that types a character, dead keys and the number pad left out; none where the layout has
    /// none. Looks at no key of `exceptions`.
    std::optional<KeyStroke> strokeFor(char32_t character, const KeyboardLocks& locks,
                                       const std::set<xcb_keycode_t>& exceptions);
    /// The key that means a symbol by itself, in whichever layout.
    std::optional<xcb_keycode_t> keyFor(xkb_keysym_t symbol) const;
    /// The symbol of a key by itself in its first layout; none where it means nothing.
    xkb_keysym_t meaningOf(xcb_keycode_t key) const;
    /// Keys that do something only while they are held.
    const std::set<xcb_keycode_t>& heldModifiers() const { return heldModifiers_; }
    /// Keys that mean nothing, the highest first.
    std::vector<xcb_keycode_t> spareKeys() const;

private:
    using Strokes = std::map<char32_t, KeyStroke>;

    void findHeldModifiers();
    Strokes strokes(const KeyboardLocks& locks, const std::set<xcb_keycode_t>& exceptions) const;
    void addStrokes(xkb_state& state, const std::vector<xcb_keycode_t>& modifiers,
                    const std::set<xcb_keycode_t>& exceptions, Strokes& strokes) const;
    std::vector<xcb_keycode_t> allKeys() const;
    bool meansNothing(xcb_keycode_t key) const;

    XkbHandle<xkb_keymap> keymap_;
    std::set<xcb_keycode_t> heldModifiers_;
    std::map<KeyboardLocks, Strokes> strokes_;
};

} // namespace vesk
