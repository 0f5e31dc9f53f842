#include "VeskPlatform/Linux/Secrets/SealingKey.hpp"

#include "VeskPlatform/KeychainItems.hpp"
#include "VeskPlatform/Linux/Secrets/KeychainFailure.hpp"

#include <algorithm>
#include <sodium.h>

namespace vesk {
namespace {

constexpr std::size_t nonceSize = crypto_aead_xchacha20poly1305_ietf_NPUBBYTES,
                      tagSize = crypto_aead_xchacha20poly1305_ietf_ABYTES;

static_assert(SealingKey::size == crypto_aead_xchacha20poly1305_ietf_KEYBYTES);

void prepareLibrary() {
    if (sodium_init() < 0) throw KeychainFailure(KeychainStatus::failed, "The system has no random numbers.");
}

const unsigned char* bytesOf(std::string_view text) { return reinterpret_cast<const unsigned char*>(text.data()); }
unsigned char* bytesOf(std::string& text) { return reinterpret_cast<unsigned char*>(text.data()); }

} // namespace

WipedText::~WipedText() { sodium_memzero(text_.data(), text_.capacity()); }

PassphraseCost PassphraseCost::ofNewStore() {
    PassphraseCost cost{.salt = std::string(crypto_pwhash_SALTBYTES, '\0'),
                        .operations = crypto_pwhash_argon2id_OPSLIMIT_INTERACTIVE,
                        .memory = crypto_pwhash_argon2id_MEMLIMIT_INTERACTIVE};
    fillWithRandomBytes(cost.salt);
    return cost;
}

bool PassphraseCost::isSensible() const {
    constexpr std::int64_t mostOperations = 64, mostMemory = std::int64_t{1} << 30;
    return salt.size() == crypto_pwhash_SALTBYTES && operations >= crypto_pwhash_argon2id_OPSLIMIT_INTERACTIVE
           && operations <= mostOperations && memory >= crypto_pwhash_argon2id_MEMLIMIT_INTERACTIVE
           && memory <= mostMemory;
}

SealingKey::SealingKey(std::string_view bytes) {
    prepareLibrary();
    if (bytes.size() != size) throw KeychainFailure(KeychainStatus::decode, "A key has another length.");
    std::ranges::copy(bytes, bytes_.begin());
}

SealingKey::SealingKey(std::string_view passphrase, const PassphraseCost& cost) {
    prepareLibrary();
    if (!cost.isSensible()) throw KeychainFailure(KeychainStatus::decode, "The cost of a passphrase was changed.");
    const int result =
        crypto_pwhash(bytes_.data(), bytes_.size(), passphrase.data(), passphrase.size(),
                      bytesOf(std::string_view(cost.salt)), static_cast<unsigned long long>(cost.operations),
                      static_cast<std::size_t>(cost.memory), crypto_pwhash_ALG_ARGON2ID13);
    if (result != 0) throw KeychainFailure(KeychainStatus::failed, "There is not enough memory for a passphrase.");
}

SealingKey::~SealingKey() { sodium_memzero(bytes_.data(), bytes_.size()); }

std::string SealingKey::seal(std::string_view context, std::string_view bytes) const {
    std::string sealed(nonceSize, '\0');
    fillWithRandomBytes(sealed);
    sealed.resize(nonceSize + bytes.size() + tagSize);
    crypto_aead_xchacha20poly1305_ietf_encrypt(bytesOf(sealed) + nonceSize, nullptr, bytesOf(bytes), bytes.size(),
                                               bytesOf(context), context.size(), nullptr, bytesOf(sealed),
                                               bytes_.data());
    return sealed;
}

std::optional<std::string> SealingKey::unseal(std::string_view context, std::string_view sealed) const {
    if (sealed.size() < nonceSize + tagSize) return std::nullopt;
    std::string bytes(sealed.size() - nonceSize - tagSize, '\0');
    const std::string_view body = sealed.substr(nonceSize);
    const int result =
        crypto_aead_xchacha20poly1305_ietf_decrypt(bytesOf(bytes), nullptr, nullptr, bytesOf(body), body.size(),
                                                   bytesOf(context), context.size(), bytesOf(sealed), bytes_.data());
    return result == 0 ? std::optional(std::move(bytes)) : std::nullopt;
}

void fillWithRandomBytes(std::string& bytes) {
    prepareLibrary();
    randombytes_buf(bytes.data(), bytes.size());
}

} // namespace vesk
