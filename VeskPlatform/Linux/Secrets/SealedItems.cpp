#include "VeskPlatform/Linux/Secrets/SealedItems.hpp"

#include "VeskPlatform/KeychainItems.hpp"
#include "VeskPlatform/Linux/Secrets/KeychainFailure.hpp"

namespace vesk {
namespace {

constexpr std::string_view proofContext = "vesk secrets";
constexpr const char* keyFileName = "key file";
constexpr const char* passphraseName = "passphrase";

constexpr const char* schema = "CREATE TABLE IF NOT EXISTS seal (id INTEGER PRIMARY KEY CHECK (id = 1), "
                               "key TEXT NOT NULL, salt BLOB NOT NULL, operations INTEGER NOT NULL, "
                               "memory INTEGER NOT NULL, proof BLOB NOT NULL);"
                               "CREATE TABLE IF NOT EXISTS secret (service TEXT NOT NULL, account TEXT NOT NULL, "
                               "sealed BLOB NOT NULL, PRIMARY KEY (service, account)) WITHOUT ROWID";

[[noreturn]] void failDamaged() {
    throw KeychainFailure(KeychainStatus::decode, "The seal of the secrets is damaged.");
}

std::unique_ptr<SealingKey> keyFrom(const StoreSeal& seal, const SealingKeySource& source) {
    return seal.kind == SealingKeyKind::passphrase ? source.keyOfPassphrase(seal.cost) : source.keyOfFile();
}

void appendWithLength(std::string& bytes, std::string_view text) {
    for (unsigned shift = 0; shift < 64; shift += 8)
        bytes += static_cast<char>(static_cast<std::uint64_t>(text.size()) >> shift & 0xFFU);
    bytes += text;
}

} // namespace

std::unique_ptr<SealingKey> keyOfSeal(const StoreSeal& seal, const SealingKeySource& source) {
    auto key = keyFrom(seal, source);
    if (!key->unseal(proofContext, seal.proof))
        throw KeychainFailure(KeychainStatus::decode, seal.kind == SealingKeyKind::passphrase
                                                          ? "The passphrase is not the one of the secrets."
                                                          : "The key file is not the one of the secrets.");
    return key;
}

StoreSeal newSeal(const SealingKeySource& source) {
    StoreSeal seal{.kind = source.kindOfNewStore(), .cost = {}, .proof = {}};
    if (seal.kind == SealingKeyKind::passphrase)
        seal.cost = PassphraseCost::ofNewStore();
    else
        source.makeKeyFile();
    seal.proof = keyFrom(seal, source)->seal(proofContext, {});
    return seal;
}

std::string contextOf(std::string_view service, std::string_view account) {
    std::string context;
    appendWithLength(context, service);
    appendWithLength(context, account);
    return context;
}

bool SealedItems::isSetUp() {
    // An empty file is a database without tables: a writer was stopped before its first commit.
    return SqliteQuery(connection_, "SELECT 1 FROM sqlite_master WHERE name = 'secret'").next();
}

void SealedItems::setUp() { connection_.run(schema); }

std::optional<StoreSeal> SealedItems::seal() {
    SqliteQuery query(connection_, "SELECT key, salt, operations, memory, proof FROM seal");
    if (!query.next()) return std::nullopt;
    StoreSeal seal{.kind = SealingKeyKind::keyFile,
                   .cost = {query.text(1), query.number(2).value_or(-1), query.number(3).value_or(-1)},
                   .proof = query.text(4)};
    const std::string kind = query.text(0);
    if (kind == passphraseName)
        seal.kind = SealingKeyKind::passphrase;
    else if (kind != keyFileName)
        failDamaged();
    return seal;
}

void SealedItems::writeSeal(const StoreSeal& seal) {
    SqliteQuery query(connection_, "INSERT INTO seal VALUES (1, ?, ?, ?, ?, ?)");
    query.bind(0, std::string(seal.kind == SealingKeyKind::passphrase ? passphraseName : keyFileName));
    query.bindBytes(1, seal.cost.salt.empty() ? std::string_view("") : std::string_view(seal.cost.salt));
    query.bind(2, seal.cost.operations);
    query.bind(3, seal.cost.memory);
    query.bindBytes(4, seal.proof);
    query.next();
}

std::optional<std::string> SealedItems::sealed(const std::string& service, const std::string& account) {
    SqliteQuery query(connection_, "SELECT sealed FROM secret WHERE service = ? AND account = ?");
    query.bind(0, service);
    query.bind(1, account);
    return query.next() ? std::optional(query.text(0)) : std::nullopt;
}

void SealedItems::insert(const std::string& service, const std::string& account, std::string_view sealed) {
    SqliteQuery query(connection_, "INSERT INTO secret VALUES (?, ?, ?)");
    query.bind(0, service);
    query.bind(1, account);
    query.bindBytes(2, sealed);
    query.next();
}

void SealedItems::replace(const std::string& service, const std::string& account, std::string_view sealed) {
    SqliteQuery query(connection_, "UPDATE secret SET sealed = ? WHERE service = ? AND account = ?");
    query.bindBytes(0, sealed);
    query.bind(1, service);
    query.bind(2, account);
    query.next();
}

std::int64_t SealedItems::remove(const std::string& service, const std::string& account) {
    SqliteQuery query(connection_, "DELETE FROM secret WHERE service = ? AND account = ?");
    query.bind(0, service);
    query.bind(1, account);
    query.next();
    return changes();
}

std::int64_t SealedItems::removeAll(const std::string& service) {
    SqliteQuery query(connection_, "DELETE FROM secret WHERE service = ?");
    query.bind(0, service);
    query.next();
    return changes();
}

std::int64_t SealedItems::changes() {
    SqliteQuery query(connection_, "SELECT changes()");
    return query.next() ? query.number(0).value_or(0) : 0;
}

} // namespace vesk
