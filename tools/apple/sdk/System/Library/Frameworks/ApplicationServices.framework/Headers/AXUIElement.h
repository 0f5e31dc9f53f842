#pragma once

#include <ApplicationServices/AXError.h>
#include <CoreFoundation/CoreFoundation.h>
#include <sys/types.h>

CF_ASSUME_NONNULL_BEGIN

typedef const struct CF_BRIDGED_TYPE(id) __AXUIElement* AXUIElementRef;

CF_EXPORT CFStringRef kAXTrustedCheckOptionPrompt;

CF_EXPORT Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef _Nullable options);

CF_EXPORT CFTypeID AXUIElementGetTypeID(void);
CF_EXPORT AXUIElementRef AXUIElementCreateApplication(pid_t process);
CF_EXPORT AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                                CFTypeRef _Nullable* _Nonnull CF_RETURNS_RETAINED value);
CF_EXPORT AXError AXUIElementIsAttributeSettable(AXUIElementRef element, CFStringRef attribute, Boolean* settable);
CF_EXPORT AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef value);

CF_ASSUME_NONNULL_END
