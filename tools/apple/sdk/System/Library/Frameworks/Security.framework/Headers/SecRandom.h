#pragma once

#include <Security/SecBase.h>

CF_ASSUME_NONNULL_BEGIN
CF_EXTERN_C_BEGIN

typedef const struct __SecRandom* SecRandomRef;
extern const SecRandomRef kSecRandomDefault;

int SecRandomCopyBytes(SecRandomRef _Nullable random, size_t count, void* bytes) __attribute__((warn_unused_result));

CF_EXTERN_C_END
CF_ASSUME_NONNULL_END
