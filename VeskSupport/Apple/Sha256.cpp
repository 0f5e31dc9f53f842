#include "VeskSupport/Sha256.hpp"

#include <CommonCrypto/CommonDigest.h>
#include <algorithm>
#include <limits>

namespace vesk {

std::array<std::uint8_t, 32> sha256(std::string_view bytes) {
    std::array<std::uint8_t, 32> digest{};
    static_assert(digest.size() == CC_SHA256_DIGEST_LENGTH);
    CC_SHA256_CTX context;
    CC_SHA256_Init(&context);
    while (!bytes.empty()) { // a length has 32 bits
        const std::size_t length = std::min<std::size_t>(bytes.size(), std::numeric_limits<CC_LONG>::max());
        CC_SHA256_Update(&context, bytes.data(), static_cast<CC_LONG>(length));
        bytes.remove_prefix(length);
    }
    CC_SHA256_Final(digest.data(), &context);
    return digest;
}

} // namespace vesk
