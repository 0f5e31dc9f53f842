#include "VeskPlatform/Linux/X11/X11InputEvents.hpp"

#include "VeskPlatform/Linux/Desktop/InputSymbols.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Utf16.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <ranges>
#include <utility>
#include <variant>
#include <xcb/xtest.h>

namespace vesk {

namespace {

class X11PreparedEvent : public PreparedInputEvent {
public:
    explicit X11PreparedEvent(std::variant<MouseEvent, KeyboardEvent> whole) : event(whole) {}
    std::variant<MouseEvent, KeyboardEvent> event;
};

std::int16_t pixel(double coordinate) {
    using Limits = std::numeric_limits<std::int16_t>;
    if (std::isnan(coordinate)) return 0;
    return static_cast<std::int16_t>(std::clamp(std::round(coordinate), double(Limits::min()), double(Limits::max())));
}

} // namespace

X11InputEvents::X11InputEvents(X11Connection& connection, std::string display)
    : connection_(connection), display_(std::move(display)) {}

X11InputEvents::~X11InputEvents() {
    try {
        if (pressed_) release();
        if (pressedButton_) fake(XCB_BUTTON_RELEASE, *pressedButton_);
        connection_.synchronize();
    } catch (const ErrorRecord&) { // without a display no key is down
    }
}

bool X11InputEvents::canPress() {
    if (!canPress_) {
        const auto* const extension = xcb_get_extension_data(connection_.get(), &xcb_test_id);
        canPress_ = extension != nullptr && extension->present != 0;
    }
    return *canPress_;
}

X11Keyboard& X11InputEvents::keyboard() {
    if (!keyboard_) keyboard_.emplace(connection_, display_);
    return *keyboard_;
}

std::unique_ptr<PreparedInputEvent> X11InputEvents::create(const MouseEvent& event) {
    return canPress() && event.button <= 1 ? std::make_unique<X11PreparedEvent>(event) : nullptr;
}

/// Looks only at what holds whatever the keyboard's state is; which key it will be is decided when it is pressed.
std::unique_ptr<PreparedInputEvent> X11InputEvents::create(const KeyboardEvent& event) {
    if (!canPress()) return nullptr;
    if (!event.unit) {
        if (!strokeOf(event)) return nullptr;
    } else if (!symbolOfControlCharacter(*event.unit) && !isFirstUnit(*event.unit) && !isSecondUnit(*event.unit)) {
        if (*event.unit < 0x20 || xkb_utf32_to_keysym(*event.unit) == XKB_KEY_NoSymbol) return nullptr;
    }
    return std::make_unique<X11PreparedEvent>(event);
}

void X11InputEvents::post(const PreparedInputEvent& event) {
    std::visit([this](const auto& whole) { send(whole); }, dynamic_cast<const X11PreparedEvent&>(event).event);
    connection_.flush();
}

void X11InputEvents::fake(std::uint8_t type, std::uint8_t detail, std::int16_t x, std::int16_t y) {
    xcb_test_fake_input(connection_.get(), type, detail, XCB_CURRENT_TIME, connection_.root(), x, y, 0);
}

void X11InputEvents::send(const MouseEvent& event) {
    fake(XCB_MOTION_NOTIFY, 0, pixel(event.point.x), pixel(event.point.y));
    if (event.type == MouseEventType::moved) return;
    const bool isDown = event.type == MouseEventType::leftDown || event.type == MouseEventType::rightDown;
    const std::uint8_t button = event.button == 0 ? 1 : 3;
    if (isDown) hold({{XCB_BUTTON_RELEASE, button}});
    fake(isDown ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, button);
    pressedButton_ = isDown ? std::optional(button) : std::nullopt;
    if (!isDown) holdNothing();
}

/// A unit is typed whole with its first event: the server is woken once for it, and no letter can stay down.
void X11InputEvents::send(const KeyboardEvent& event) {
    if (pressed_) release();
    if (!event.keyDown) return;
    keyboard().refreshState();
    if (auto stroke = event.unit ? strokeOfUnit(*event.unit) : strokeOf(event)) press(std::move(*stroke), !event.unit);
    if (pressed_ && event.unit) release();
}

std::optional<KeyStroke> X11InputEvents::strokeOf(const KeyboardEvent& event) {
    const auto symbol = symbolOfKeyCode(event.keyCode);
    const auto key = symbol ? keyboard().keyFor(*symbol) : std::nullopt;
    if (!key) return std::nullopt;
    KeyStroke stroke{*key, {}};
    for (const xkb_keysym_t modifier : symbolsOfModifiers(event.flags)) {
        const auto held = keyboard().keyFor(modifier);
        if (!held) return std::nullopt;
        stroke.modifiers.push_back(*held);
    }
    return stroke;
}

/// Nothing for the first unit of two; the second one types the whole character.
std::optional<KeyStroke> X11InputEvents::strokeOfUnit(char16_t unit) {
    const auto first = std::exchange(firstUnit_, std::nullopt);
    if (isFirstUnit(unit)) {
        firstUnit_ = unit;
        return std::nullopt;
    }
    if (isSecondUnit(unit)) return first ? keyboard().strokeFor(joinedUnits(*first, unit)) : std::nullopt;
    if (const auto symbol = symbolOfControlCharacter(unit)) {
        const auto key = keyboard().keyFor(*symbol);
        return key ? std::optional(KeyStroke{*key, {}}) : std::nullopt;
    }
    return keyboard().strokeFor(unit);
}

/// What brings all as it was before a stroke.
std::vector<FakeInput> X11InputEvents::endOf(const Pressed& pressed) const {
    std::vector<FakeInput> inputs{{XCB_KEY_RELEASE, pressed.stroke.key}};
    for (const xcb_keycode_t key : std::views::reverse(pressed.stroke.modifiers))
        inputs.push_back({XCB_KEY_RELEASE, key});
    for (const xcb_keycode_t key : pressed.letGo) inputs.push_back({XCB_KEY_PRESS, key});
    return inputs;
}

/// What is down between two events would stay down for ever if this process were killed there.
void X11InputEvents::hold(const std::vector<FakeInput>& letGo) {
    if (!keeper_) keeper_.emplace(display_);
    keeper_->note(letGo);
}

void X11InputEvents::holdNothing() {
    if (!keeper_) return;
    connection_.flush();
    keeper_->release();
}

void X11InputEvents::press(KeyStroke stroke, bool isHeld) {
    Pressed& down = pressed_.emplace(Pressed{std::move(stroke), keyboard().heldModifiers()});
    if (isHeld) hold(endOf(down));
    for (const xcb_keycode_t key : down.letGo) fake(XCB_KEY_RELEASE, key);
    for (const xcb_keycode_t key : down.stroke.modifiers) fake(XCB_KEY_PRESS, key);
    fake(XCB_KEY_PRESS, down.stroke.key);
}

void X11InputEvents::release() {
    const Pressed up = *std::exchange(pressed_, std::nullopt);
    for (const FakeInput& input : endOf(up)) fake(input.type, input.detail);
    holdNothing();
    if (!up.stroke.modifiers.empty() || !up.letGo.empty()) keyboard().askState();
}

} // namespace vesk
