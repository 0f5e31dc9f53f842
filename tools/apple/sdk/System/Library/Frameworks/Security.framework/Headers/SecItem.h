#pragma once

#include <Security/SecBase.h>

CF_ASSUME_NONNULL_BEGIN
CF_EXTERN_C_BEGIN

extern const CFStringRef kSecClass;
extern const CFStringRef kSecClassGenericPassword;
extern const CFStringRef kSecAttrAccount;
extern const CFStringRef kSecAttrService;
extern const CFStringRef kSecValueData;
extern const CFStringRef kSecReturnData;
extern const CFStringRef kSecReturnAttributes;
extern const CFStringRef kSecMatchLimit;
extern const CFStringRef kSecMatchLimitOne;

OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef _Nullable* _Nullable CF_RETURNS_RETAINED result);
OSStatus SecItemAdd(CFDictionaryRef attributes, CFTypeRef _Nullable* _Nullable CF_RETURNS_RETAINED result);
OSStatus SecItemUpdate(CFDictionaryRef query, CFDictionaryRef attributesToUpdate);
OSStatus SecItemDelete(CFDictionaryRef query);

CF_EXTERN_C_END
CF_ASSUME_NONNULL_END
