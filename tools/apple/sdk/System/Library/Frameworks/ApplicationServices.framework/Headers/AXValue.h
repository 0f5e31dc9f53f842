#pragma once

#include <CoreFoundation/CoreFoundation.h>

CF_ASSUME_NONNULL_BEGIN

typedef const struct CF_BRIDGED_TYPE(id) __AXValue* AXValueRef;

typedef CF_ENUM(UInt32, AXValueType) {
    kAXValueTypeCGPoint = 1,
    kAXValueTypeCGSize = 2,
};

CF_EXPORT CFTypeID AXValueGetTypeID(void);
CF_EXPORT AXValueType AXValueGetType(AXValueRef value);
CF_EXPORT Boolean AXValueGetValue(AXValueRef value, AXValueType type, void* result);

CF_ASSUME_NONNULL_END
