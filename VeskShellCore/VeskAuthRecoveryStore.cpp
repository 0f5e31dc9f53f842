#include "VeskShellCore/VeskAuthRecoveryStore.hpp"

#include "VeskShellCore/VeskAuthError.hpp"
#include "VeskSupport/Text.hpp"

namespace vesk {

VeskAuthRecoveryStore::VeskAuthRecoveryStore(const KeychainStore& keychain)
    : VeskAuthRecoveryStore([keychain] { return keychain.read(account); },
                            [keychain](const std::string& grant) { keychain.upsert(account, grant); },
                            [keychain] { keychain.remove(account); }) {}

std::optional<std::string> VeskAuthRecoveryStore::pendingGrant() const { return trimmedOrAbsent(loadGrant()); }

void VeskAuthRecoveryStore::persist(const std::string& grant) const {
    const std::string text(trimmed(grant));
    if (text.empty()) throw VeskAuthError::invalidResponse();
    saveGrant(text);
}

} // namespace vesk
