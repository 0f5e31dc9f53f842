#include "VeskShellCore/VeskAuthRecoveryStore.hpp"

#include "VeskShellCore/VeskAuthError.hpp"
#include "VeskSupport/Text.hpp"

namespace vesk {

std::optional<std::string> VeskAuthRecoveryStore::pendingGrant() const { return trimmedOrAbsent(loadGrant()); }

void VeskAuthRecoveryStore::persist(const std::string& grant) const {
    const std::string text(trimmed(grant));
    if (text.empty()) throw VeskAuthError::invalidResponse();
    saveGrant(text);
}

} // namespace vesk
