#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// Text that is wiped from memory when it goes.
class WipedText {
public:
    WipedText() = default;
    explicit WipedText(std::size_t size) : text_(size, '\0') {}
    WipedText(WipedText&&) = delete;
    WipedText& operator=(WipedText&&) = delete;
    ~WipedText();

    std::string& value() { return text_; }
    const std::string& value() const { return text_; }

private:
    std::string text_;
};

/// How a key is made of a passphrase: Argon2id (RFC 9106) with one lane.
struct PassphraseCost {
    std::string salt;
    /// Passes over the memory, and the memory in bytes.
    std::int64_t operations = 0, memory = 0;

    /// What a new store takes, with a salt of its own: 64 MiB and two passes, a tenth of a second.
    static PassphraseCost ofNewStore();
    /// Whether it can be meant: a file that was changed must not take all memory.
    bool isSensible() const;
    bool operator==(const PassphraseCost&) const = default;
};

/// A key of 256 bits that seals bytes with XChaCha20-Poly1305 (draft-irtf-cfrg-xchacha): nobody without the key reads
/// or changes them. Wiped from memory when it goes. Functions throw KeychainFailure where the system lacks memory or
/// random numbers.
class SealingKey {
public:
    static constexpr std::size_t size = 32;

    explicit SealingKey(std::string_view bytes);
    SealingKey(std::string_view passphrase, const PassphraseCost& cost);
    SealingKey(const SealingKey&) = delete;
    SealingKey& operator=(const SealingKey&) = delete;
    ~SealingKey();

    /// A nonce of its own and then the sealed bytes, which open only together with the same `context`.
    std::string seal(std::string_view context, std::string_view bytes) const;
    /// None where `sealed` was sealed with another key or context, or was changed.
    std::optional<std::string> unseal(std::string_view context, std::string_view sealed) const;

private:
    std::array<unsigned char, size> bytes_{};
};

/// Fills `bytes` with random bytes that are fit for keys.
void fillWithRandomBytes(std::string& bytes);

} // namespace vesk
