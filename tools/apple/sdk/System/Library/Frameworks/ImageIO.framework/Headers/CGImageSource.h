#pragma once

#include <ImageIO/ImageIOBase.h>

CF_ASSUME_NONNULL_BEGIN

typedef struct CF_BRIDGED_TYPE(id) CGImageSource* CGImageSourceRef;

IMAGEIO_EXTERN const CFStringRef kCGImageSourceCreateThumbnailFromImageIfAbsent;
IMAGEIO_EXTERN const CFStringRef kCGImageSourceCreateThumbnailWithTransform;
IMAGEIO_EXTERN const CFStringRef kCGImageSourceThumbnailMaxPixelSize;

IMAGEIO_EXTERN CGImageSourceRef _Nullable CGImageSourceCreateWithURL(CFURLRef url, CFDictionaryRef _Nullable options);
IMAGEIO_EXTERN CGImageRef _Nullable CGImageSourceCreateThumbnailAtIndex(CGImageSourceRef source, size_t index,
                                                                        CFDictionaryRef _Nullable options);

CF_ASSUME_NONNULL_END
