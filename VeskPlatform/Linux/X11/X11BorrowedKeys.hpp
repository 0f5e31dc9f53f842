#pragma once

#include "VeskPlatform/Linux/X11/X11Connection.hpp"
#include "VeskPlatform/Linux/X11/X11KeyKeeper.hpp"

#include <chrono>
#include <optional>
#include <set>
#include <string>
#include <vector>
#include <xkbcommon/xkbcommon.h>

namespace vesk {

class X11Keymap;

/// Keys without a meaning that are lent one for a while, for characters that the layout does not have. A program asks
/// the server for the new meaning only when it comes to the key's event, so that a meaning lasts a while after its last
/// use. All keys are given back at the end of this object, by a process of its own where this one is killed.
class X11BorrowedKeys {
public:
    X11BorrowedKeys(X11Connection& connection, std::string display);
    ~X11BorrowedKeys();
    X11BorrowedKeys(const X11BorrowedKeys&) = delete;
    X11BorrowedKeys& operator=(const X11BorrowedKeys&) = delete;

    /// Told whenever the keys have got meanings from elsewhere: forgets those that have lost the lent one.
    void adoptKeymap(const X11Keymap& keymap);
    const std::set<xcb_keycode_t>& keys() const { return keys_; }
    /// A key that means the symbol without Shift and `shifted` with it; the same where the symbol has no case. Waits
    /// while all keys were used a moment ago. None where there is no spare key.
    std::optional<xcb_keycode_t> keyFor(xkb_keysym_t symbol, xkb_keysym_t shifted);

private:
    using Moment = std::chrono::steady_clock::time_point;
    struct Loan {
        KeyLoan meaning;
        Moment lastUse;
    };

    std::optional<xcb_keycode_t> freeKey() const;
    Loan* lend(xkb_keysym_t symbol, xkb_keysym_t shifted);
    Loan* lendAgain(xkb_keysym_t symbol, xkb_keysym_t shifted);
    bool isStillFree(xcb_keycode_t key);
    void giveMeaning(const KeyLoan& meaning);
    void giveBack();

    X11Connection& connection_;
    std::string display_;
    std::vector<xcb_keycode_t> spare_;
    std::set<xcb_keycode_t> keys_;
    std::vector<Loan> loans_;
    std::optional<X11KeyKeeper> keeper_;
};

} // namespace vesk
