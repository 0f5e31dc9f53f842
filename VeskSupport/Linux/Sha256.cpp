#include "VeskSupport/Sha256.hpp"

#include <new>
#include <openssl/crypto.h>
#include <openssl/evp.h>

namespace vesk {

std::array<std::uint8_t, 32> sha256(std::string_view bytes) {
    // Without the settings of the system's own OpenSSL, which may name modules of another version.
    OPENSSL_init_crypto(OPENSSL_INIT_NO_LOAD_CONFIG, nullptr);
    std::array<std::uint8_t, 32> digest{};
    // The digest is built in, so that nothing but the lack of memory makes it fail.
    if (EVP_Digest(bytes.data(), bytes.size(), digest.data(), nullptr, EVP_sha256(), nullptr) != 1)
        throw std::bad_alloc();
    return digest;
}

} // namespace vesk
