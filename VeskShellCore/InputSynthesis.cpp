#include "VeskShellCore/InputSynthesis.hpp"

#include "VeskShellCore/NativeControlError.hpp"

#include <chrono>
#include <memory>

namespace vesk {
namespace {

constexpr std::chrono::milliseconds clickPause{12};
constexpr std::chrono::milliseconds keyPause{8};
constexpr std::chrono::milliseconds typingPause{6};

using Prepared = std::unique_ptr<PreparedInputEvent>;

struct ButtonEvents {
    MouseEventType down, up;
    std::uint32_t number;
};

ButtonEvents eventsOf(CapabilityMouseButton button) {
    if (button == CapabilityMouseButton::right) return {MouseEventType::rightDown, MouseEventType::rightUp, 1};
    return {MouseEventType::leftDown, MouseEventType::leftUp, 0};
}

/// A key going down and up again; either is null where it cannot be made.
struct KeyStroke {
    Prepared down, up;
    explicit operator bool() const { return down != nullptr && up != nullptr; }
};

KeyStroke prepare(InputEvents& events, KeyboardEvent event) {
    KeyStroke stroke;
    event.keyDown = true;
    stroke.down = events.create(event);
    event.keyDown = false;
    stroke.up = events.create(event);
    return stroke;
}

} // namespace

Task<void> clickAt(InputEvents& events, Sleeper& sleeper, ScreenPoint point, CapabilityMouseButton button) {
    const ButtonEvents types = eventsOf(button);
    const Prepared moved = events.create(MouseEvent{MouseEventType::moved, point, types.number});
    const Prepared down = events.create(MouseEvent{types.down, point, types.number});
    const Prepared up = events.create(MouseEvent{types.up, point, types.number});
    if (!moved || !down || !up) throw NativeControlError(81, "Unable to synthesize mouse events for computer control.");
    events.post(*moved);
    events.post(*down);
    co_await sleeper.sleep(clickPause);
    events.post(*up);
}

Task<void> typeUnits(InputEvents& events, Sleeper& sleeper, std::u16string units) {
    for (const char16_t unit : units) {
        const KeyStroke stroke = prepare(events, {.keyCode = 0, .unit = unit});
        if (!stroke) throw NativeControlError(83, "Unable to synthesize keyboard events for text entry.");
        events.post(*stroke.down);
        events.post(*stroke.up);
        co_await sleeper.sleep(typingPause);
    }
}

Task<void> pressKeyCode(InputEvents& events, Sleeper& sleeper, std::uint16_t keyCode, std::uint32_t flags) {
    const KeyStroke stroke = prepare(events, {.keyCode = keyCode, .flags = flags});
    if (!stroke) throw NativeControlError(84, "Unable to synthesize keyboard shortcut events.");
    events.post(*stroke.down);
    co_await sleeper.sleep(keyPause);
    events.post(*stroke.up);
}

} // namespace vesk
