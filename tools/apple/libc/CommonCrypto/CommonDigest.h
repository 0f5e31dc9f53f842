// Digests of the system's own cryptography.
#pragma once

#include <stdint.h>

#define CC_SHA256_DIGEST_LENGTH 32
typedef uint32_t CC_LONG;

typedef struct CC_SHA256state_st {
    CC_LONG count[2];
    CC_LONG hash[8];
    CC_LONG wbuf[16];
} CC_SHA256_CTX;

#ifdef __cplusplus
extern "C" {
#endif
int CC_SHA256_Init(CC_SHA256_CTX* context);
int CC_SHA256_Update(CC_SHA256_CTX* context, const void* data, CC_LONG length);
int CC_SHA256_Final(unsigned char* digest, CC_SHA256_CTX* context);
#ifdef __cplusplus
}
#endif
