#pragma once

#include <Security/CSCommon.h>

CF_ASSUME_NONNULL_BEGIN

CF_EXPORT OSStatus SecStaticCodeCreateWithPath(CFURLRef path, SecCSFlags flags,
                                               CF_RETURNS_RETAINED SecStaticCodeRef _Nullable* _Nonnull staticCode);

CF_ASSUME_NONNULL_END
