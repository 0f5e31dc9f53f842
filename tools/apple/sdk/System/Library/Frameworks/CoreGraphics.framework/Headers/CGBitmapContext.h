#pragma once

#include <CoreGraphics/CGBase.h>
#include <CoreGraphics/CGColorSpace.h>
#include <CoreGraphics/CGContext.h>

CF_ASSUME_NONNULL_BEGIN

CG_EXTERN CGContextRef _Nullable CGBitmapContextCreate(void* _Nullable data, size_t width, size_t height,
                                                       size_t bitsPerComponent, size_t bytesPerRow,
                                                       CGColorSpaceRef _Nullable space, uint32_t bitmapInfo);
CG_EXTERN CGImageRef _Nullable CGBitmapContextCreateImage(CGContextRef _Nullable context);

CF_ASSUME_NONNULL_END
