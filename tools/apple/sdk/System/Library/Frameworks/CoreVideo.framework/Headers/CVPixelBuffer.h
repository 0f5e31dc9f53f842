#pragma once

#include <CoreFoundation/CoreFoundation.h>

CF_ASSUME_NONNULL_BEGIN

typedef struct CF_BRIDGED_TYPE(id) __CVBuffer* CVBufferRef;
typedef CVBufferRef CVImageBufferRef;
typedef CVImageBufferRef CVPixelBufferRef;
typedef int32_t CVReturn;
typedef uint64_t CVOptionFlags;

enum : CVReturn { kCVReturnSuccess = 0 };

enum : OSType { kCVPixelFormatType_32BGRA = 0x42475241 };

typedef CF_OPTIONS(CVOptionFlags, CVPixelBufferLockFlags) { kCVPixelBufferLock_ReadOnly = 1 };

CF_EXPORT const CFStringRef kCVPixelBufferPixelFormatTypeKey;
CF_EXPORT const CFStringRef kCVPixelBufferWidthKey;
CF_EXPORT const CFStringRef kCVPixelBufferHeightKey;
CF_EXPORT const CFStringRef kCVPixelBufferCGImageCompatibilityKey;
CF_EXPORT const CFStringRef kCVPixelBufferCGBitmapContextCompatibilityKey;

CF_EXPORT CVReturn CVPixelBufferCreate(CFAllocatorRef _Nullable allocator, size_t width, size_t height,
                                       OSType pixelFormat, CFDictionaryRef _Nullable attributes,
                                       CF_RETURNS_RETAINED CVPixelBufferRef _Nullable* _Nonnull buffer);
CF_EXPORT CVReturn CVPixelBufferLockBaseAddress(CVPixelBufferRef buffer, CVPixelBufferLockFlags flags);
CF_EXPORT CVReturn CVPixelBufferUnlockBaseAddress(CVPixelBufferRef buffer, CVPixelBufferLockFlags flags);
CF_EXPORT void* _Nullable CVPixelBufferGetBaseAddress(CVPixelBufferRef buffer);
CF_EXPORT size_t CVPixelBufferGetBytesPerRow(CVPixelBufferRef buffer);
CF_EXPORT size_t CVPixelBufferGetWidth(CVPixelBufferRef buffer);
CF_EXPORT size_t CVPixelBufferGetHeight(CVPixelBufferRef buffer);

CF_ASSUME_NONNULL_END
