#include "VeskPlatform/Linux/Secrets/SealedFileKeychain.hpp"

#include "VeskPlatform/Linux/PrivateDatabaseFile.hpp"
#include "VeskPlatform/Linux/Secrets/KeychainFailure.hpp"
#include "VeskPlatform/Portable/KeychainNames.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <new>
#include <sqlite3.h>
#include <sys/stat.h>
#include <utility>

namespace vesk {
namespace {

/// What SQLite's codes mean for a keychain.
std::int32_t statusOf(const SqliteFailure& failure) {
    switch (failure.code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED: return KeychainStatus::unavailable;
    case SQLITE_PERM:
    case SQLITE_AUTH:
    case SQLITE_READONLY: return KeychainStatus::denied;
    default: return failure.isOfNoUse() ? KeychainStatus::decode : KeychainStatus::failed;
    }
}

std::int32_t statusOf(const PosixError& error) {
    const auto code = error.code();
    return code == EACCES || code == EPERM || code == EROFS ? KeychainStatus::denied : KeychainStatus::failed;
}

/// The status of `body`; a failure becomes its status and one line for the log.
template <class Body> std::int32_t answered(const SealedFileOptions& options, const Body& body) {
    const auto told = [&](std::int32_t status, const std::string& text) {
        if (options.log) options.log("secrets: " + text);
        return status;
    };
    try {
        return body();
    } catch (const KeychainFailure& failure) {
        return told(failure.status, failure.what());
    } catch (const SqliteFailure& failure) {
        return told(statusOf(failure), std::string(failure.what()) + " (" + std::to_string(failure.code) + ").");
    } catch (const PosixError& error) {
        return told(statusOf(error), error.description() + ".");
    } catch (const std::bad_alloc&) {
        return told(KeychainStatus::failed, "There is not enough memory.");
    }
}

} // namespace

SealedFileKeychain::SealedFileKeychain(SealedFileOptions options)
    : options_(std::move(options)), path_(options_.folder + "/secrets.sqlite"),
      source_(options_.folder + "/secrets.key", options_.passphraseFile) {}

std::int32_t SealedFileKeychain::add(const std::string& service, const std::string& account, std::string_view bytes) {
    if (!isKeychainName(service) || !isKeychainName(account)) return KeychainStatus::parameter;
    return run(Access::creating, [&](SealedItems& items) {
        const SealingKey& sealing = keyForFirst(items);
        if (items.sealed(service, account)) return KeychainStatus::duplicateItem;
        items.insert(service, account, sealing.seal(contextOf(service, account), bytes));
        return KeychainStatus::success;
    });
}

std::int32_t SealedFileKeychain::update(const std::string& service, const std::string& account,
                                        std::string_view bytes) {
    if (!isKeychainName(service) || !isKeychainName(account)) return KeychainStatus::parameter;
    return run(Access::changing, [&](SealedItems& items) {
        if (!items.sealed(service, account)) return KeychainStatus::itemNotFound;
        items.replace(service, account, keyOf(items).seal(contextOf(service, account), bytes));
        return KeychainStatus::success;
    });
}

KeychainItems::Copied SealedFileKeychain::copy(const std::string& service, const std::string& account) {
    if (!isKeychainName(service) || !isKeychainName(account)) return {KeychainStatus::parameter, std::nullopt};
    Copied copied;
    copied.status = run(Access::reading, [&](SealedItems& items) {
        const auto sealed = items.sealed(service, account);
        if (!sealed) return KeychainStatus::itemNotFound;
        copied.bytes = keyOf(items).unseal(contextOf(service, account), *sealed);
        if (!copied.bytes) throw KeychainFailure(KeychainStatus::decode, "The secret of " + account + " was changed.");
        return KeychainStatus::success;
    });
    return copied;
}

std::int32_t SealedFileKeychain::find(const std::string& service, const std::string& account) {
    if (!isKeychainName(service) || !isKeychainName(account)) return KeychainStatus::parameter;
    return run(Access::reading, [&](SealedItems& items) {
        return items.sealed(service, account) ? KeychainStatus::success : KeychainStatus::itemNotFound;
    });
}

std::int32_t SealedFileKeychain::remove(const std::string& service, const std::string& account) {
    if (!isKeychainName(service) || !isKeychainName(account)) return KeychainStatus::parameter;
    return run(Access::changing, [&](SealedItems& items) {
        return items.remove(service, account) > 0 ? KeychainStatus::success : KeychainStatus::itemNotFound;
    });
}

std::int32_t SealedFileKeychain::removeAll(const std::string& service) {
    if (!isKeychainName(service)) return KeychainStatus::parameter;
    return run(Access::changing, [&](SealedItems& items) {
        return items.removeAll(service) > 0 ? KeychainStatus::success : KeychainStatus::itemNotFound;
    });
}

SealedFileState SealedFileKeychain::state() {
    SealedFileState state{.path = path_, .kind = std::nullopt, .trouble = {}, .status = KeychainStatus::success};
    SealedFileOptions told = options_;
    told.log = [&](const std::string& message) { state.trouble = message.substr(message.find(' ') + 1); };
    const std::lock_guard guard(lock_);
    state.status = answered(told, [&] {
        if (options_.folder.empty() || !exists()) return KeychainStatus::success;
        SqliteConnection connection(path_, options_.patience);
        SealedItems items(connection);
        if (!items.isSetUp()) return KeychainStatus::success;
        if (const auto seal = items.seal()) {
            state.kind = seal->kind;
            key(*seal);
        }
        return KeychainStatus::success;
    });
    return state;
}

template <class Body> std::int32_t SealedFileKeychain::run(Access access, const Body& body) {
    const std::lock_guard guard(lock_);
    return answered(options_, [&] {
        if (options_.folder.empty())
            throw KeychainFailure(KeychainStatus::unavailable,
                                  "There is no state folder: the user has no home folder.");
        if (access == Access::creating)
            preparePrivateDatabaseFile(options_.folder, path_);
        else if (!exists())
            return KeychainStatus::itemNotFound;
        return inTransaction(access, body);
    });
}

template <class Body> std::int32_t SealedFileKeychain::inTransaction(Access access, const Body& body) {
    SqliteConnection connection(path_, options_.patience);
    SealedItems items(connection);
    // What is removed is wiped from the file, and a change is on the disk when it is answered.
    connection.run("PRAGMA secure_delete = ON; PRAGMA synchronous = EXTRA");
    // A writer begins at once, so that two of them never wait for each other's half.
    connection.run(access == Access::reading ? "BEGIN" : "BEGIN IMMEDIATE");
    if (access == Access::creating)
        items.setUp();
    else if (!items.isSetUp())
        return KeychainStatus::itemNotFound;
    const std::int32_t status = body(items);
    connection.run("COMMIT"); // a failure before it rolls back when the connection closes
    return status;
}

bool SealedFileKeychain::exists() const {
    struct stat status {};
    if (::stat(path_.c_str(), &status) == 0) return true;
    if (errno == ENOENT || errno == ENOTDIR) return false;
    throw PosixError(errno, path_);
}

const SealingKey& SealedFileKeychain::key(const StoreSeal& seal) {
    if (!key_ || seal_ != seal) {
        key_ = keyOfSeal(seal, source_);
        seal_ = seal;
    }
    return *key_;
}

const SealingKey& SealedFileKeychain::keyOf(SealedItems& items) {
    if (const auto seal = items.seal()) return key(*seal);
    throw KeychainFailure(KeychainStatus::decode, "The secrets have no seal any more.");
}

const SealingKey& SealedFileKeychain::keyForFirst(SealedItems& items) {
    if (items.seal()) return keyOf(items);
    const StoreSeal made = newSeal(source_);
    items.writeSeal(made);
    return key(made);
}

} // namespace vesk
