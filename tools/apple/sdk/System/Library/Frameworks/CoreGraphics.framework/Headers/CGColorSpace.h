#pragma once

#include <CoreGraphics/CGBase.h>

CF_ASSUME_NONNULL_BEGIN

typedef struct CF_BRIDGED_TYPE(id) CGColorSpace* CGColorSpaceRef;

CG_EXTERN CGColorSpaceRef _Nullable CGColorSpaceCreateDeviceRGB(void);

CF_ASSUME_NONNULL_END
