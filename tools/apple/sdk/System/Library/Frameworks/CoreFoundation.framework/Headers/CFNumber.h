#pragma once

#include <CoreFoundation/CFBase.h>

CF_ASSUME_NONNULL_BEGIN
CF_EXTERN_C_BEGIN

typedef const struct CF_BRIDGED_TYPE(NSNumber) __CFBoolean* CFBooleanRef;
typedef const struct CF_BRIDGED_TYPE(NSNumber) __CFNumber* CFNumberRef;
extern const CFBooleanRef _Null_unspecified kCFBooleanTrue;
extern const CFBooleanRef _Null_unspecified kCFBooleanFalse;

typedef CF_ENUM(CFIndex, CFNumberType) {
    kCFNumberSInt64Type = 4,
    kCFNumberDoubleType = 13,
};

CFTypeID CFBooleanGetTypeID(void);
Boolean CFBooleanGetValue(CFBooleanRef boolean);
CFTypeID CFNumberGetTypeID(void);
Boolean CFNumberIsFloatType(CFNumberRef number);
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);

CF_EXTERN_C_END
CF_ASSUME_NONNULL_END
