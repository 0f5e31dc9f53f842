#pragma once

#include <ImageIO/ImageIOBase.h>

CF_ASSUME_NONNULL_BEGIN

typedef struct CF_BRIDGED_TYPE(id) CGImageDestination* CGImageDestinationRef;

IMAGEIO_EXTERN CGImageDestinationRef _Nullable CGImageDestinationCreateWithURL(CFURLRef url, CFStringRef type,
                                                                               size_t count,
                                                                               CFDictionaryRef _Nullable options);
IMAGEIO_EXTERN void CGImageDestinationAddImage(CGImageDestinationRef destination, CGImageRef image,
                                               CFDictionaryRef _Nullable properties);
IMAGEIO_EXTERN bool CGImageDestinationFinalize(CGImageDestinationRef destination);

CF_ASSUME_NONNULL_END
