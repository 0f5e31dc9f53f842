#pragma once

#include "VeskPlatform/InputEvents.hpp"
#include "VeskPlatform/Linux/X11/X11KeyKeeper.hpp"
#include "VeskPlatform/Linux/X11/X11Keyboard.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

/// Input through the XTest extension. Points go to the nearest pixel that a monitor shows. `command` is Super, `option`
/// Alt, and delete BackSpace. Keys that the user holds are let go of for the length of a stroke, so that they do not
/// alter it.
class X11InputEvents : public InputEvents {
public:
    X11InputEvents(X11Connection& connection, std::string display);
    /// Lets go of what was pressed and not released; where the process is killed, another one does.
    ~X11InputEvents() override;
    X11InputEvents(const X11InputEvents&) = delete;
    X11InputEvents& operator=(const X11InputEvents&) = delete;

    std::unique_ptr<PreparedInputEvent> create(const MouseEvent& event) override;
    std::unique_ptr<PreparedInputEvent> create(const KeyboardEvent& event) override;
    void post(const PreparedInputEvent& event) override;

private:
    /// A key that is down: what goes with it until it is up again.
    struct Pressed {
        KeyStroke stroke;
        std::vector<xcb_keycode_t> letGo;
    };

    bool canPress();
    void fake(std::uint8_t type, std::uint8_t detail, std::int16_t x = 0, std::int16_t y = 0);
    void send(const MouseEvent& event);
    void send(const KeyboardEvent& event);
    void press(KeyStroke stroke, bool isHeld);
    void release();
    std::vector<FakeInput> endOf(const Pressed& pressed) const;
    void hold(const std::vector<FakeInput>& letGo);
    void holdNothing();
    std::optional<KeyStroke> strokeOf(const KeyboardEvent& event);
    std::optional<KeyStroke> strokeOfUnit(char16_t unit);
    X11Keyboard& keyboard();

    X11Connection& connection_;
    std::string display_;
    std::optional<bool> canPress_;
    std::optional<X11Keyboard> keyboard_;
    std::optional<Pressed> pressed_;
    std::optional<std::uint8_t> pressedButton_;
    std::optional<X11KeyKeeper> keeper_;
    /// The first unit of a character that waits for its second.
    std::optional<char16_t> firstUnit_;
};

} // namespace vesk
