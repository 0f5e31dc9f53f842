#pragma once

#include "VeskPlatform/Linux/Secrets/SealingKeySource.hpp"
#include "VeskPlatform/Linux/SqliteConnection.hpp"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// How a store is sealed: the row that it begins with. The proof is sealed with its key, so that a wrong one is found
/// before anything is written with it.
struct StoreSeal {
    SealingKeyKind kind = SealingKeyKind::keyFile;
    PassphraseCost cost;
    std::string proof;

    bool operator==(const StoreSeal&) const = default;
};

/// The key of a seal. Throws KeychainFailure, `decode` where it is another one than sealed the store.
std::unique_ptr<SealingKey> keyOfSeal(const StoreSeal& seal, const SealingKeySource& source);
/// A seal for a store that has none, and its key.
StoreSeal newSeal(const SealingKeySource& source);

/// What a service and an account seal a secret with, so that a row is worth nothing under another name.
std::string contextOf(std::string_view service, std::string_view account);

/// The rows of the file. Values are sealed. Functions throw SqliteFailure.
class SealedItems {
public:
    explicit SealedItems(SqliteConnection& connection) : connection_(connection) {}

    /// Whether there are tables: without, there are no secrets.
    bool isSetUp();
    /// In the caller's transaction.
    void setUp();
    /// Throws also KeychainFailure, for one that makes no sense.
    std::optional<StoreSeal> seal();
    void writeSeal(const StoreSeal& seal);
    std::optional<std::string> sealed(const std::string& service, const std::string& account);
    void insert(const std::string& service, const std::string& account, std::string_view sealed);
    void replace(const std::string& service, const std::string& account, std::string_view sealed);
    /// How many went.
    std::int64_t remove(const std::string& service, const std::string& account);
    std::int64_t removeAll(const std::string& service);

private:
    std::int64_t changes();

    SqliteConnection& connection_;
};

} // namespace vesk
