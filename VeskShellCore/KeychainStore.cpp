#include "VeskShellCore/KeychainStore.hpp"

#include "VeskShellCore/VeskShellError.hpp"
#include "VeskSupport/Text.hpp"

namespace vesk {
namespace {

[[noreturn]] void fail(const std::string& what, const std::string& account, std::int32_t status) {
    throw VeskShellError::keychainError(what + " " + account + ".", status);
}

} // namespace

void KeychainStore::upsert(const std::string& account, const std::string& secret) const {
    const std::string name(trimmed(account));
    if (name.empty()) return;
    if (!isWellFormedUtf8(secret)) fail("Unable to encode secret for", name, KeychainStatus::parameter);
    const std::string_view bytes = trimmed(secret);
    const std::int32_t updated = items_.update(service_, name, bytes);
    if (updated == KeychainStatus::success) return;
    if (updated != KeychainStatus::itemNotFound) fail("Unable to update Keychain item for", name, updated);
    const std::int32_t added = items_.add(service_, name, bytes);
    if (added != KeychainStatus::success) fail("Unable to add Keychain item for", name, added);
}

std::optional<std::string> KeychainStore::read(const std::string& account) const {
    const std::string name(trimmed(account));
    if (name.empty()) return std::nullopt;
    KeychainItems::Copied copied = items_.copy(service_, name);
    if (copied.status == KeychainStatus::itemNotFound) return std::nullopt;
    if (copied.status != KeychainStatus::success) fail("Unable to read Keychain item for", name, copied.status);
    if (!copied.bytes || !isWellFormedUtf8(*copied.bytes))
        fail("Unable to decode Keychain item for", name, KeychainStatus::decode);
    return std::move(copied.bytes);
}

void KeychainStore::remove(const std::string& account) const {
    const std::string name(trimmed(account));
    if (name.empty()) return;
    const std::int32_t status = items_.remove(service_, name);
    if (status != KeychainStatus::success && status != KeychainStatus::itemNotFound)
        fail("Unable to delete Keychain item for", name, status);
}

} // namespace vesk
