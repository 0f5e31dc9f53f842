#pragma once

#include "VeskPlatform/KeychainItems.hpp"
#include "VeskPlatform/Linux/Secrets/SealedItems.hpp"

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace vesk {

struct SealedFileOptions {
    /// Of `secrets.sqlite` and `secrets.key`; empty where the user has none.
    std::string folder;
    /// The file of the passphrase, empty for the key file.
    std::string passphraseFile;
    /// One line for the diagnostic log.
    std::function<void(const std::string& message)> log;
    /// How long another process is waited for.
    std::chrono::milliseconds patience{5000};
};

/// What the doctor tells of the file.
struct SealedFileState {
    std::string path;
    /// None before the first secret.
    std::optional<SealingKeyKind> kind;
    /// Why the secrets cannot be read, a sentence; empty where they can.
    std::string trouble;
    std::int32_t status = KeychainStatus::success;
};

/// Secrets in a file of their own, for sessions without a Secret Service: an SQLite database of mode 0600 whose values
/// are sealed; services and accounts stand in the clear. The first secret decides what the key is made of, and the file
/// remembers it. Each call does one transaction, so that processes may share the file. Reading creates nothing.
class SealedFileKeychain : public KeychainItems {
public:
    explicit SealedFileKeychain(SealedFileOptions options);

    std::int32_t update(const std::string& service, const std::string& account, std::string_view bytes) override;
    std::int32_t add(const std::string& service, const std::string& account, std::string_view bytes) override;
    Copied copy(const std::string& service, const std::string& account) override;
    std::int32_t find(const std::string& service, const std::string& account) override;
    std::int32_t remove(const std::string& service, const std::string& account) override;
    std::int32_t removeAll(const std::string& service) override;

    /// Changes nothing.
    SealedFileState state();

private:
    enum class Access { reading, changing, creating };
    template <class Body> std::int32_t run(Access access, const Body& body);
    template <class Body> std::int32_t inTransaction(Access access, const Body& body);
    bool exists() const;
    const SealingKey& key(const StoreSeal& seal);
    const SealingKey& keyOf(SealedItems& items);
    /// Seals the store where it is not yet.
    const SealingKey& keyForFirst(SealedItems& items);

    SealedFileOptions options_;
    std::string path_;
    SealingKeySource source_;
    std::mutex lock_;
    /// The key that was last used, since a passphrase takes a tenth of a second.
    std::optional<StoreSeal> seal_;
    std::unique_ptr<SealingKey> key_;
};

} // namespace vesk
