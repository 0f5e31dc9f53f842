#include "VeskPlatform/Linux/X11/X11Keyboard.hpp"

#include "VeskPlatform/Linux/X11/XcbKeyboard.hpp"

#include <string_view>
#include <utility>
#include <xcb/xcb.h>
#include <xcb/xinput.h>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

namespace vesk {

namespace {

/// The keyboard that XTest presses; its table can differ from that of the keyboard on the desk, and the server takes it
/// for all keys as soon as one is pressed. Without the X Input Extension there is only one.
std::int32_t testKeyboard(X11Connection& connection) {
    static constexpr std::string_view name = "Virtual core XTEST keyboard";
    const auto* const extension = xcb_get_extension_data(connection.get(), &xcb_input_id);
    if (extension != nullptr && extension->present != 0) {
        const auto version =
            connection.answer<xcb_input_xi_query_version_reply_t>(xcb_input_xi_query_version(connection.get(), 2, 2));
        const auto devices = connection.answer<xcb_input_xi_query_device_reply_t>(
            xcb_input_xi_query_device(connection.get(), XCB_INPUT_DEVICE_ALL));
        if (version && devices) {
            for (auto each = xcb_input_xi_query_device_infos_iterator(devices.get()); each.rem > 0;
                 xcb_input_xi_device_info_next(&each)) {
                const std::string_view own(xcb_input_xi_device_info_name(each.data), each.data->name_len);
                if (own == name) return each.data->deviceid;
            }
        }
    }
    return xkb_x11_get_core_keyboard_device_id(connection.get());
}

void selectEvents(X11Connection& connection) {
    static constexpr std::uint16_t kinds =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    static constexpr std::uint16_t parts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS
                                           | XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_KEY_ACTIONS
                                           | XCB_XKB_MAP_PART_VIRTUAL_MODS | XCB_XKB_MAP_PART_VIRTUAL_MOD_MAP;
    xcb_xkb_select_events(connection.get(), XCB_XKB_ID_USE_CORE_KBD, kinds, 0, kinds, parts, parts, nullptr);
}

/// Letters go in pairs, as on keys of layouts: Shift and Caps Lock then do what programs expect of them.
std::pair<xkb_keysym_t, xkb_keysym_t> pairOf(xkb_keysym_t symbol) {
    const xkb_keysym_t lower = xkb_keysym_to_lower(symbol), upper = xkb_keysym_to_upper(symbol);
    const bool isPair = lower != upper && (symbol == lower || symbol == upper) && xkb_keysym_to_lower(upper) == lower
                        && xkb_keysym_to_upper(lower) == upper;
    return isPair ? std::pair(lower, upper) : std::pair(symbol, symbol);
}

} // namespace

X11Keyboard::X11Keyboard(X11Connection& connection, std::string display)
    : connection_(connection), borrowed_(connection, std::move(display)) {
    connection_.synchronize(); // see X11Keymap: the library waits without a deadline
    xkb_x11_setup_xkb_extension(connection_.get(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr);
    device_ = testKeyboard(connection_);
    selectEvents(connection_);
    askState();
    connection_.listen([this](const xcb_generic_event_t& event) { note(event); });
}

void X11Keyboard::note(const xcb_generic_event_t& event) {
    const auto* const extension = xcb_get_extension_data(connection_.get(), &xcb_xkb_id);
    if (extension == nullptr || (event.response_type & 0x7F) != extension->first_event) return;
    if (event.pad0 != XCB_XKB_STATE_NOTIFY) {
        if (!isOwnChange(event)) keymap_.reset();
    } else {
        const auto& change = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
        state_ = {{change.lockedMods, change.lockedGroup}, change.baseMods != 0 || change.baseGroup != 0};
    }
}

/// Lending a key a meaning changes the table, too; but no key that is asked for there.
bool X11Keyboard::isOwnChange(const xcb_generic_event_t& event) const {
    if (event.pad0 != XCB_XKB_MAP_NOTIFY) return false;
    const auto& change = reinterpret_cast<const xcb_xkb_map_notify_event_t&>(event);
    if ((change.changed & (XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_KEY_ACTIONS)) == 0) return false;
    for (int key = change.firstKeySym; key < change.firstKeySym + change.nKeySyms; ++key)
        if (!borrowed_.keys().contains(static_cast<xcb_keycode_t>(key))) return false;
    return true;
}

X11Keymap& X11Keyboard::keymap() {
    if (!keymap_) {
        keymap_ = std::make_unique<X11Keymap>(connection_, device_);
        borrowed_.adoptKeymap(*keymap_);
    }
    return *keymap_;
}

void X11Keyboard::askState() {
    if (!stateQuestion_) stateQuestion_ = xcb_xkb_get_state(connection_.get(), XCB_XKB_ID_USE_CORE_KBD).sequence;
}

/// An answer tells the state as it was after our own last stroke; events tell what has changed since.
void X11Keyboard::refreshState() {
    const auto question = std::exchange(stateQuestion_, std::nullopt);
    if (!question) return connection_.dispatchEvents();
    const auto answer = connection_.answer<xcb_xkb_get_state_reply_t>(xcb_xkb_get_state_cookie_t{*question});
    if (answer) state_ = {{answer->lockedMods, answer->lockedGroup}, answer->baseMods != 0 || answer->baseGroup != 0};
    connection_.dispatchKnownEvents(); // reading the answer has read them, too
}

std::optional<KeyStroke> X11Keyboard::borrowedStroke(xkb_keysym_t symbol, bool isCapsLocked) {
    const auto [lower, upper] = pairOf(symbol);
    const auto shift = keymap().keyFor(XKB_KEY_Shift_L);
    const bool needsShift = lower != upper && (symbol == upper) != isCapsLocked;
    if (needsShift && !shift) return std::nullopt;
    const auto key = borrowed_.keyFor(lower, upper);
    if (!key) return std::nullopt;
    KeyStroke stroke{*key, {}};
    if (needsShift) stroke.modifiers.push_back(*shift);
    return stroke;
}

std::optional<KeyStroke> X11Keyboard::strokeFor(char32_t character) {
    if (auto stroke = keymap().strokeFor(character, state_.locks, borrowed_.keys())) return stroke;
    const xkb_keysym_t symbol = xkb_utf32_to_keysym(character);
    if (symbol == XKB_KEY_NoSymbol) return std::nullopt;
    return borrowedStroke(symbol, (state_.locks.modifiers & XCB_MOD_MASK_LOCK) != 0);
}

std::optional<xcb_keycode_t> X11Keyboard::keyFor(xkb_keysym_t symbol) { return keymap().keyFor(symbol); }

std::vector<xcb_keycode_t> X11Keyboard::heldModifiers() {
    std::vector<xcb_keycode_t> held;
    if (!state_.isSomethingHeld) return held;
    const auto keys = connection_.answer<xcb_query_keymap_reply_t>(xcb_query_keymap(connection_.get()));
    if (!keys) return held;
    for (const xcb_keycode_t key : keymap().heldModifiers())
        if ((keys->keys[key / 8] >> (key % 8) & 1) != 0) held.push_back(key);
    return held;
}

} // namespace vesk
