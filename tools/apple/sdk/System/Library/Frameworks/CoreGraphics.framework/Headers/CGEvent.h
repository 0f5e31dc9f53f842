#pragma once

#include <CoreGraphics/CGBase.h>

CF_ASSUME_NONNULL_BEGIN

typedef struct CF_BRIDGED_TYPE(id) __CGEvent* CGEventRef;
typedef struct CF_BRIDGED_TYPE(id) __CGEventSource* CGEventSourceRef;
typedef uint16_t CGKeyCode;

typedef CF_ENUM(uint32_t, CGMouseButton) {
    kCGMouseButtonLeft = 0,
    kCGMouseButtonRight = 1,
};

typedef CF_ENUM(uint32_t, CGEventType) {
    kCGEventLeftMouseDown = 1,
    kCGEventLeftMouseUp = 2,
    kCGEventRightMouseDown = 3,
    kCGEventRightMouseUp = 4,
    kCGEventMouseMoved = 5,
};

typedef CF_OPTIONS(uint64_t, CGEventFlags) {
    kCGEventFlagMaskShift = 0x20000,
    kCGEventFlagMaskControl = 0x40000,
    kCGEventFlagMaskAlternate = 0x80000,
    kCGEventFlagMaskCommand = 0x100000,
};

typedef CF_ENUM(uint32_t, CGEventTapLocation) {
    kCGHIDEventTap = 0,
    kCGSessionEventTap = 1,
};

CG_EXTERN CGEventRef _Nullable CGEventCreateMouseEvent(CGEventSourceRef _Nullable source, CGEventType type,
                                                       CGPoint position, CGMouseButton button);
CG_EXTERN CGEventRef _Nullable CGEventCreateKeyboardEvent(CGEventSourceRef _Nullable source, CGKeyCode key,
                                                          bool isDown);
CG_EXTERN void CGEventKeyboardSetUnicodeString(CGEventRef _Nullable event, UniCharCount length,
                                               const UniChar* _Nullable units);
CG_EXTERN void CGEventSetFlags(CGEventRef _Nullable event, CGEventFlags flags);
CG_EXTERN void CGEventPost(CGEventTapLocation tap, CGEventRef _Nullable event);

CF_ASSUME_NONNULL_END
