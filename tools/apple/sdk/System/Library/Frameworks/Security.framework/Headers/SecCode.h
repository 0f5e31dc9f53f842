#pragma once

#include <Security/CSCommon.h>

CF_ASSUME_NONNULL_BEGIN

enum : uint32_t { kSecCSSigningInformation = 1 << 1 };

CF_EXPORT const CFStringRef kSecCodeInfoEntitlementsDict;

CF_EXPORT OSStatus SecCodeCopySigningInformation(SecStaticCodeRef code, SecCSFlags flags,
                                                 CF_RETURNS_RETAINED CFDictionaryRef _Nullable* _Nonnull information);

CF_ASSUME_NONNULL_END
