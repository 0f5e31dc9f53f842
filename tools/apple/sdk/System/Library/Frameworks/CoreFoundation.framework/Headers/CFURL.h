#pragma once

#include <CoreFoundation/CFBase.h>

CF_ASSUME_NONNULL_BEGIN
typedef const struct CF_BRIDGED_TYPE(NSURL) __CFURL* CFURLRef;
typedef struct CF_BRIDGED_TYPE(NSError) __CFError* CFErrorRef;
CF_ASSUME_NONNULL_END
