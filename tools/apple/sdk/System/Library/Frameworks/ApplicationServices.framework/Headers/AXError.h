#pragma once

#include <CoreFoundation/CoreFoundation.h>

typedef CF_ENUM(SInt32, AXError) {
    kAXErrorSuccess = 0,
    kAXErrorFailure = -25200,
    kAXErrorCannotComplete = -25204,
};
