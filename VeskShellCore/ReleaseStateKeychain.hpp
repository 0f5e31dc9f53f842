#pragma once

#include "VeskPlatform/KeychainItems.hpp"
#include "VeskPlatform/RandomSource.hpp"
#include "VeskShellCore/KeychainStore.hpp"
#include "VeskShellCore/ReleaseStateSecretArchive.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// Why an archive, a service or the keychain was of no use. Domain "ReleaseStateKeychainError"; the code is the kind's
/// place. No description holds a secret.
class ReleaseStateKeychainError : public ErrorRecord {
public:
    enum class Kind { invalidArchive = 1, unsafeService = 2, security = 3 };

    static ReleaseStateKeychainError invalidArchive(const std::string& text);
    static ReleaseStateKeychainError unsafeService(const std::string& service);
    /// `operation` is what was done when the keychain answered with `status`.
    static ReleaseStateKeychainError security(const std::string& operation, std::int32_t status);

    Kind kind() const { return kind_; }
    /// The keychain's; 0 of the other kinds.
    std::int32_t status() const { return status_; }

private:
    ReleaseStateKeychainError(Kind kind, const std::string& description);

    Kind kind_;
    std::int32_t status_ = 0;
};

/// Carries an installation's secrets into an archive, and proves that an archive can be carried back. It reads the
/// bytes of the live service alone, writes to rehearsal services alone, deletes these alone, and takes no account that
/// it does not know. Functions throw ReleaseStateKeychainError and block for as long as the keychain does.
namespace ReleaseStateKeychain {

inline constexpr const char* liveService = liveKeychainService;
/// With the blank at its end.
inline constexpr std::string_view rehearsalServicePrefix = "Vesk Release Rehearsal ";
inline constexpr const auto& accounts = archivedKeychainAccounts;

/// A binary property list of an archive that is valid.
std::string encode(PropertyListCoder& coder, const ReleaseStateSecretArchive& archive);
/// A valid archive. Throws also DecodingError.
ReleaseStateSecretArchive decode(PropertyListCoder& coder, const std::string& bytes);
/// Throws for an archive that this build could not have exported.
void validate(const ReleaseStateSecretArchive& archive);

/// The live service's secrets, as they are stored; refuses every other service.
ReleaseStateSecretArchive exportNamedSecrets(KeychainItems& items, const std::string& service);
/// Which accounts the live or a rehearsal service has; reads no secret.
std::map<std::string, bool> presence(KeychainItems& items, const std::string& service);
/// Plays the archive into a service of its own, compares byte by byte and removes the service, whatever happens.
/// Whether all was as in the archive.
bool rehearse(KeychainItems& items, RandomSource& random, const ReleaseStateSecretArchive& archive);

/// The steps of a rehearsal that change the keychain; they refuse every service but a rehearsal's.
void importForRehearsal(KeychainItems& items, const std::map<std::string, std::string>& values,
                        const std::string& service);
void deleteRehearsalService(KeychainItems& items, const std::string& service);

} // namespace ReleaseStateKeychain
} // namespace vesk
