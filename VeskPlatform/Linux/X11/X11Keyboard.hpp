#pragma once

#include "VeskPlatform/Linux/X11/X11BorrowedKeys.hpp"
#include "VeskPlatform/Linux/X11/X11Keymap.hpp"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

/// The keyboard whose keys XTest presses. Follows changes of the layout; what the user has locked and holds is asked
/// for at each use.
class X11Keyboard {
public:
    X11Keyboard(X11Connection& connection, std::string display);

    /// To be called after our own keys have changed the state for a while, or events of that time would pass for the
    /// user's doing. Asks ahead of the next use, so that nothing has to wait for the answer then.
    void askState();
    /// Brings the state up to date, for the functions below.
    void refreshState();

    /// The stroke that types a character now; a key is borrowed where the layout has none for it. None where the
    /// character has no symbol, or no key is left.
    std::optional<KeyStroke> strokeFor(char32_t character);
    /// The key that means a symbol by itself.
    std::optional<xcb_keycode_t> keyFor(xkb_keysym_t symbol);
    /// The keys held down now which would alter what another key does.
    std::vector<xcb_keycode_t> heldModifiers();

private:
    struct State {
        KeyboardLocks locks;
        bool isSomethingHeld = false;
    };

    X11Keymap& keymap();
    void note(const xcb_generic_event_t& event);
    bool isOwnChange(const xcb_generic_event_t& event) const;
    std::optional<KeyStroke> borrowedStroke(xkb_keysym_t symbol, bool isCapsLocked);

    X11Connection& connection_;
    X11BorrowedKeys borrowed_;
    std::int32_t device_;
    std::unique_ptr<X11Keymap> keymap_;
    State state_;
    /// The question that is on its way.
    std::optional<std::uint32_t> stateQuestion_;
};

} // namespace vesk
