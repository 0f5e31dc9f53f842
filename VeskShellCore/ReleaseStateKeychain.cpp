#include "VeskShellCore/ReleaseStateKeychain.hpp"

#include <algorithm>

namespace vesk {

ReleaseStateKeychainError::ReleaseStateKeychainError(Kind kind, const std::string& description)
    : ErrorRecord("ReleaseStateKeychainError", static_cast<std::int64_t>(kind), description), kind_(kind) {}

ReleaseStateKeychainError ReleaseStateKeychainError::invalidArchive(const std::string& text) {
    return {Kind::invalidArchive, text};
}

ReleaseStateKeychainError ReleaseStateKeychainError::unsafeService(const std::string& service) {
    return {Kind::unsafeService, "Refusing to use unsupported Keychain service: " + service};
}

ReleaseStateKeychainError ReleaseStateKeychainError::security(const std::string& operation, std::int32_t status) {
    ReleaseStateKeychainError error(Kind::security,
                                    operation + " failed with Keychain status " + std::to_string(status) + ".");
    error.status_ = status;
    return error;
}

namespace ReleaseStateKeychain {
namespace {

using Error = ReleaseStateKeychainError;

constexpr std::int64_t schemaVersion = 1;

bool isKnown(const std::string& account) { return std::ranges::find(accounts, account) != accounts.end(); }

bool isRehearsal(const std::string& service) { return service.starts_with(rehearsalServicePrefix); }

void requireRehearsal(const std::string& service) {
    if (!isRehearsal(service)) throw Error::unsafeService(service);
}

std::optional<std::string> read(KeychainItems& items, const std::string& service, const std::string& account) {
    KeychainItems::Copied copied = items.copy(service, account);
    if (copied.status == KeychainStatus::itemNotFound) return std::nullopt;
    if (copied.status != KeychainStatus::success || !copied.bytes)
        throw Error::security("Reading named item for " + account, copied.status);
    return std::move(copied.bytes);
}

bool exists(KeychainItems& items, const std::string& service, const std::string& account) {
    const std::int32_t status = items.find(service, account);
    if (status == KeychainStatus::success) return true;
    if (status == KeychainStatus::itemNotFound) return false;
    throw Error::security("Checking named item for " + account, status);
}

bool holdsExactly(KeychainItems& items, const std::string& service, const std::map<std::string, std::string>& values) {
    return std::ranges::all_of(accounts, [&](const char* account) {
        const auto expected = values.find(account);
        const std::optional<std::string> stored = read(items, service, account);
        return expected == values.end() ? !stored : stored == expected->second;
    });
}

bool roundTrips(KeychainItems& items, const std::string& service, const std::map<std::string, std::string>& values) {
    importForRehearsal(items, values, service);
    const bool matches = holdsExactly(items, service, values);
    deleteRehearsalService(items, service);
    return matches;
}

/// After a failure that is being handled.
void removeLeftService(KeychainItems& items, const std::string& service) {
    try {
        deleteRehearsalService(items, service);
    } catch (const ErrorRecord& error) {
        throw Error::invalidArchive("Keychain rehearsal failed and its temporary service could not be removed: "
                                    + error.description());
    }
}

} // namespace

std::string encode(PropertyListCoder& coder, const ReleaseStateSecretArchive& archive) {
    validate(archive);
    return coder.encodeBinary(toPropertyList(archive));
}

ReleaseStateSecretArchive decode(PropertyListCoder& coder, const std::string& bytes) {
    ReleaseStateSecretArchive archive = readSecretArchive(coder.decode(bytes));
    validate(archive);
    return archive;
}

void validate(const ReleaseStateSecretArchive& archive) {
    if (archive.schemaVersion != schemaVersion) throw Error::invalidArchive("Unsupported secret archive schema.");
    if (archive.sourceService != liveService)
        throw Error::invalidArchive("Secret archive does not come from the Vesk service.");
    if (!std::ranges::equal(archive.accounts, accounts))
        throw Error::invalidArchive("Secret archive account allowlist does not match this build.");
    for (const auto& [account, bytes] : archive.values)
        if (!isKnown(account)) throw Error::invalidArchive("Secret archive contains an unexpected account.");
}

ReleaseStateSecretArchive exportNamedSecrets(KeychainItems& items, const std::string& service) {
    if (service != liveService) throw Error::unsafeService(service);
    ReleaseStateSecretArchive archive{.schemaVersion = schemaVersion,
                                      .sourceService = liveService,
                                      .accounts = {accounts.begin(), accounts.end()},
                                      .values = {}};
    for (const char* account : accounts)
        if (auto bytes = read(items, service, account)) archive.values.emplace(account, std::move(*bytes));
    return archive;
}

std::map<std::string, bool> presence(KeychainItems& items, const std::string& service) {
    if (service != liveService && !isRehearsal(service)) throw Error::unsafeService(service);
    std::map<std::string, bool> result;
    for (const char* account : accounts) result.emplace(account, exists(items, service, account));
    return result;
}

bool rehearse(KeychainItems& items, RandomSource& random, const ReleaseStateSecretArchive& archive) {
    validate(archive);
    const std::string service = std::string(rehearsalServicePrefix) + randomUuid(random).text();
    try {
        return roundTrips(items, service, archive.values);
    } catch (const std::exception&) {
        removeLeftService(items, service);
        throw;
    }
}

void importForRehearsal(KeychainItems& items, const std::map<std::string, std::string>& values,
                        const std::string& service) {
    requireRehearsal(service);
    for (const char* account : accounts) {
        const auto found = values.find(account);
        if (found == values.end()) continue;
        const std::int32_t status = items.add(service, account, found->second);
        if (status != KeychainStatus::success)
            throw Error::security(std::string("Adding rehearsal item for ") + account, status);
    }
}

void deleteRehearsalService(KeychainItems& items, const std::string& service) {
    requireRehearsal(service);
    const std::int32_t status = items.removeAll(service);
    if (status != KeychainStatus::success && status != KeychainStatus::itemNotFound)
        throw Error::security("Deleting rehearsal service", status);
}

} // namespace ReleaseStateKeychain
} // namespace vesk
