#include "VeskPlatform/Apple/QuartzInputEvents.hpp"

#include "VeskPlatform/Apple/CoreFoundationReference.hpp"
#include "VeskPlatform/Apple/QuartzGeometry.hpp"

#import <CoreGraphics/CoreGraphics.h>

#include <utility>

namespace vesk {

namespace {

// The port's numbers are the system's own.
static_assert(static_cast<CGEventType>(MouseEventType::leftDown) == kCGEventLeftMouseDown);
static_assert(static_cast<CGEventType>(MouseEventType::leftUp) == kCGEventLeftMouseUp);
static_assert(static_cast<CGEventType>(MouseEventType::rightDown) == kCGEventRightMouseDown);
static_assert(static_cast<CGEventType>(MouseEventType::rightUp) == kCGEventRightMouseUp);
static_assert(static_cast<CGEventType>(MouseEventType::moved) == kCGEventMouseMoved);
static_assert(kCGMouseButtonLeft == 0 && kCGMouseButtonRight == 1);
static_assert(kCGEventFlagMaskShift == 0x20000 && kCGEventFlagMaskControl == 0x40000);
static_assert(kCGEventFlagMaskAlternate == 0x80000 && kCGEventFlagMaskCommand == 0x100000);

constexpr auto hardwareTap = static_cast<CGEventTapLocation>(0);
static_assert(hardwareTap == kCGHIDEventTap);

class QuartzPreparedEvent : public PreparedInputEvent {
public:
    explicit QuartzPreparedEvent(CFOwned<CGEventRef> whole) : event(std::move(whole)) {}
    CFOwned<CGEventRef> event;
};

} // namespace

std::unique_ptr<PreparedInputEvent> QuartzInputEvents::create(const MouseEvent& event) {
    CFOwned<CGEventRef> made(CGEventCreateMouseEvent(nullptr, static_cast<CGEventType>(event.type),
                                                     cgPoint(event.point), static_cast<CGMouseButton>(event.button)));
    return made ? std::make_unique<QuartzPreparedEvent>(std::move(made)) : nullptr;
}

/// An event that types a unit keeps the flags that it was made with.
std::unique_ptr<PreparedInputEvent> QuartzInputEvents::create(const KeyboardEvent& event) {
    CFOwned<CGEventRef> made(CGEventCreateKeyboardEvent(nullptr, event.keyCode, event.keyDown));
    if (!made) return nullptr;
    if (event.unit) {
        const UniChar unit = *event.unit;
        CGEventKeyboardSetUnicodeString(made.get(), 1, &unit);
    } else {
        CGEventSetFlags(made.get(), static_cast<CGEventFlags>(event.flags));
    }
    return std::make_unique<QuartzPreparedEvent>(std::move(made));
}

void QuartzInputEvents::post(const PreparedInputEvent& event) {
    CGEventPost(hardwareTap, dynamic_cast<const QuartzPreparedEvent&>(event).event.get());
}

} // namespace vesk
