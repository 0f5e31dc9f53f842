#pragma once

#include <CoreGraphics/CGBase.h>

CF_ASSUME_NONNULL_BEGIN

typedef struct CF_BRIDGED_TYPE(id) CGImage* CGImageRef;

typedef CF_ENUM(uint32_t, CGImageAlphaInfo) {
    kCGImageAlphaPremultipliedFirst = 2,
};

typedef CF_OPTIONS(uint32_t, CGBitmapInfo) {
    kCGBitmapByteOrder32Little = 2 << 12,
};

CG_EXTERN size_t CGImageGetWidth(CGImageRef _Nullable image);
CG_EXTERN size_t CGImageGetHeight(CGImageRef _Nullable image);

CF_ASSUME_NONNULL_END
