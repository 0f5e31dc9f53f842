#pragma once

#include "VeskPlatform/ScreenGeometry.hpp"

#include <cstdint>
#include <memory>
#include <optional>

namespace vesk {

/// The numbers are those of the event types of the system that the assistant was made for.
enum class MouseEventType { leftDown = 1, leftUp = 2, rightDown = 3, rightUp = 4, moved = 5 };

struct MouseEvent {
    MouseEventType type{};
    ScreenPoint point;
    /// 0 left, 1 right.
    std::uint32_t button = 0;

    bool operator==(const MouseEvent&) const = default;
};

struct KeyboardEvent {
    /// A virtual key code of the same system: 36 return, 48 tab, 49 space, 51 delete, 53 escape, 123 left, 124 right,
    /// 125 down, 126 up; 0 with `unit`.
    std::uint16_t keyCode = 0;
    bool keyDown = false;
    /// The UTF-16 unit that the event types whatever the layout is. A character of two units comes as the events of
    /// its first unit and then those of its second; an adapter whose system takes whole characters sends it as one.
    std::optional<char16_t> unit{};
    /// 0x20000 shift, 0x40000 control, 0x80000 option, 0x100000 command.
    std::uint32_t flags = 0;

    bool operator==(const KeyboardEvent&) const = default;
};

/// An event that was made and can be posted; adapters derive from it.
class PreparedInputEvent {
public:
    virtual ~PreparedInputEvent() = default;
};

/// Synthesised input for whatever has the focus or lies under the pointer. Called on the main executor. What an
/// adapter changes to reach a character, such as the meaning of a spare key, it gives back at its end at the latest.
class InputEvents {
public:
    virtual ~InputEvents() = default;

    /// Null where the event cannot be made; nothing happens on the desktop.
    virtual std::unique_ptr<PreparedInputEvent> create(const MouseEvent& event) = 0;
    virtual std::unique_ptr<PreparedInputEvent> create(const KeyboardEvent& event) = 0;
    /// Hands an event of this adapter to the system, before it returns. Throws ErrorRecord where the session is gone.
    virtual void post(const PreparedInputEvent& event) = 0;
};

} // namespace vesk
