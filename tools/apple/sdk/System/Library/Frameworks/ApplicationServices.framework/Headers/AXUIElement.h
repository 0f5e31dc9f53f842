#pragma once

#include <CoreFoundation/CoreFoundation.h>

CF_ASSUME_NONNULL_BEGIN
CF_EXTERN_C_BEGIN

/// Whether a question that nobody answered yet is shown: a CFBoolean.
extern CFStringRef kAXTrustedCheckOptionPrompt;

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef _Nullable options);

CF_EXTERN_C_END
CF_ASSUME_NONNULL_END
