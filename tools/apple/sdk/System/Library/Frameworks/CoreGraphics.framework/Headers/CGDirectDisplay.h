#pragma once

#include <CoreGraphics/CGBase.h>
#include <CoreGraphics/CGError.h>
#include <CoreGraphics/CGImage.h>

CF_ASSUME_NONNULL_BEGIN

typedef uint32_t CGDirectDisplayID;

CG_EXTERN CGError CGGetActiveDisplayList(uint32_t capacity, CGDirectDisplayID* _Nullable displays,
                                         uint32_t* _Nullable count);
CG_EXTERN CGRect CGDisplayBounds(CGDirectDisplayID display);
CG_EXTERN CGImageRef _Nullable CGDisplayCreateImage(CGDirectDisplayID display)
    __attribute__((availability(macos, introduced = 10.6, deprecated = 14.0, obsoleted = 15.0)));

CF_ASSUME_NONNULL_END
