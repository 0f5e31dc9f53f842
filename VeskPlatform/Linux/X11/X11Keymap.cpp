#include "VeskPlatform/Linux/X11/X11Keymap.hpp"

#include "VeskPlatform/Linux/X11/X11Error.hpp"

#include <algorithm>
#include <utility>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

namespace vesk {

namespace {

XkbHandle<xkb_keymap> keymapOf(X11Connection& connection, std::int32_t device) {
    const XkbHandle<xkb_context> context(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES));
    connection.synchronize(); // the library waits without a deadline, so that a silent server has to show itself here
    XkbHandle<xkb_keymap> keymap(
        context ? xkb_x11_keymap_new_from_device(context.get(), connection.get(), device, XKB_KEYMAP_COMPILE_NO_FLAGS)
                : nullptr);
    connection.flush();
    if (!keymap) throw X11Error(X11Error::Kind::incapable, "The display does not tell what its keys mean.");
    return keymap;
}

bool isNumberPad(xkb_keysym_t symbol) { return symbol >= XKB_KEY_KP_Space && symbol <= XKB_KEY_KP_Equal; }

bool isPrintable(char32_t character) { return character >= 0x20 && (character < 0x7F || character > 0x9F); }

} // namespace

X11Keymap::X11Keymap(X11Connection& connection, std::int32_t device) : X11Keymap(keymapOf(connection, device)) {}

X11Keymap::X11Keymap(XkbHandle<xkb_keymap> keymap) : keymap_(std::move(keymap)) { findHeldModifiers(); }

std::vector<xcb_keycode_t> X11Keymap::allKeys() const {
    std::vector<xcb_keycode_t> keys;
    const xkb_keycode_t last = std::min<xkb_keycode_t>(xkb_keymap_max_keycode(keymap_.get()), 255);
    for (xkb_keycode_t key = xkb_keymap_min_keycode(keymap_.get()); key <= last; ++key)
        keys.push_back(static_cast<xcb_keycode_t>(key));
    return keys;
}

/// A key that locks something is none of them: letting go of it and pressing it again would switch the lock.
void X11Keymap::findHeldModifiers() {
    static constexpr unsigned int whileHeld = XKB_STATE_MODS_DEPRESSED | XKB_STATE_LAYOUT_DEPRESSED,
                                  lasting = XKB_STATE_MODS_LOCKED | XKB_STATE_LAYOUT_LOCKED;
    for (const xcb_keycode_t key : allKeys()) {
        const XkbHandle<xkb_state> state(xkb_state_new(keymap_.get()));
        const auto changed = static_cast<unsigned int>(xkb_state_update_key(state.get(), key, XKB_KEY_DOWN));
        if ((changed & whileHeld) != 0 && (changed & lasting) == 0) heldModifiers_.insert(key);
    }
}

std::optional<KeyStroke> X11Keymap::strokeFor(char32_t character, const KeyboardLocks& locks,
                                              const std::set<xcb_keycode_t>& exceptions) {
    auto known = strokes_.find(locks);
    if (known == strokes_.end()) known = strokes_.emplace(locks, strokes(locks, exceptions)).first;
    const auto found = known->second.find(character);
    if (found == known->second.end() || exceptions.contains(found->second.key)) return std::nullopt;
    return found->second;
}

/// Tries each key with each set of modifiers, as programs on the other side do, so that it does not matter by which
/// rule of the layout a lock changes a letter.
X11Keymap::Strokes X11Keymap::strokes(const KeyboardLocks& locks, const std::set<xcb_keycode_t>& exceptions) const {
    const auto shift = keyFor(XKB_KEY_Shift_L), third = keyFor(XKB_KEY_ISO_Level3_Shift),
               fifth = keyFor(XKB_KEY_ISO_Level5_Shift);
    Strokes result;
    for (const auto& extra : {std::optional<xcb_keycode_t>(), fifth}) {
        for (const bool withThird : {false, true}) {
            for (const bool withShift : {false, true}) {
                std::vector<xcb_keycode_t> modifiers;
                if (withShift && shift) modifiers.push_back(*shift);
                if (withThird && third) modifiers.push_back(*third);
                if (extra) modifiers.push_back(*extra);
                const XkbHandle<xkb_state> state(xkb_state_new(keymap_.get()));
                xkb_state_update_mask(state.get(), 0, 0, locks.modifiers, 0, 0, locks.layout);
                for (const xcb_keycode_t key : modifiers) xkb_state_update_key(state.get(), key, XKB_KEY_DOWN);
                addStrokes(*state, modifiers, exceptions, result);
            }
        }
    }
    return result;
}

void X11Keymap::addStrokes(xkb_state& state, const std::vector<xcb_keycode_t>& modifiers,
                           const std::set<xcb_keycode_t>& exceptions, Strokes& strokes) const {
    for (const xcb_keycode_t key : allKeys()) {
        if (exceptions.contains(key) || isNumberPad(xkb_state_key_get_one_sym(&state, key))) continue;
        const char32_t character = xkb_state_key_get_utf32(&state, key);
        if (isPrintable(character)) strokes.emplace(character, KeyStroke{key, modifiers});
    }
}

std::optional<xcb_keycode_t> X11Keymap::keyFor(xkb_keysym_t symbol) const {
    for (const xcb_keycode_t key : allKeys()) {
        for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts_for_key(keymap_.get(), key); ++layout) {
            const xkb_keysym_t* symbols = nullptr;
            const int count = xkb_keymap_key_get_syms_by_level(keymap_.get(), key, layout, 0, &symbols);
            if (count == 1 && symbols[0] == symbol) return key;
        }
    }
    return std::nullopt;
}

xkb_keysym_t X11Keymap::meaningOf(xcb_keycode_t key) const {
    const xkb_keysym_t* symbols = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(keymap_.get(), key, 0, 0, &symbols);
    return count == 1 ? symbols[0] : static_cast<xkb_keysym_t>(XKB_KEY_NoSymbol);
}

bool X11Keymap::meansNothing(xcb_keycode_t key) const {
    for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts_for_key(keymap_.get(), key); ++layout) {
        for (xkb_level_index_t level = 0; level < xkb_keymap_num_levels_for_key(keymap_.get(), key, layout); ++level) {
            const xkb_keysym_t* symbols = nullptr;
            if (xkb_keymap_key_get_syms_by_level(keymap_.get(), key, layout, level, &symbols) > 0) return false;
        }
    }
    return !heldModifiers_.contains(key);
}

std::vector<xcb_keycode_t> X11Keymap::spareKeys() const {
    std::vector<xcb_keycode_t> keys = allKeys();
    std::erase_if(keys, [this](xcb_keycode_t key) { return !meansNothing(key); });
    std::ranges::reverse(keys);
    return keys;
}

} // namespace vesk
