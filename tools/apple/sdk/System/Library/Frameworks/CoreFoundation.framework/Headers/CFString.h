#pragma once

#include <CoreFoundation/CFBase.h>

CF_ASSUME_NONNULL_BEGIN
CF_EXTERN_C_BEGIN

#define CFSTR(text) ((CFStringRef)__builtin___CFStringMakeConstantString("" text ""))

typedef UInt32 CFStringEncoding;
enum : CFStringEncoding { kCFStringEncodingUTF8 = 0x08000100 };

CFTypeID CFStringGetTypeID(void);

CF_EXTERN_C_END
CF_ASSUME_NONNULL_END
