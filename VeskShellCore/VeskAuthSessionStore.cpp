#include "VeskShellCore/VeskAuthSessionStore.hpp"

#include "VeskPlatform/Clock.hpp"
#include "VeskPlatform/RandomSource.hpp"
#include "VeskPlatform/UserDefaults.hpp"
#include "VeskShellCore/VeskAuthPKCE.hpp"
#include "VeskSupport/CompactJson.hpp"
#include "VeskSupport/Text.hpp"

namespace vesk {
namespace {

constexpr const char* installationKey = "app.veskhq.vesk.auth.installation-id";
constexpr const char* pendingSessionKey = "app.veskhq.vesk.auth.pending-session";
constexpr const char* signOutKey = "app.veskhq.vesk.auth.sign-out-transaction";
constexpr const char* desiredStateKey = "app.veskhq.vesk.assistant-desired-state";

template <class Record> std::optional<Record> stored(UserDefaults& defaults, const char* key) {
    const auto bytes = defaults.data(key);
    if (!bytes) return std::nullopt;
    try {
        return fromJson<Record>(parseJson(*bytes));
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}

template <class Record> void store(UserDefaults& defaults, const char* key, const Record& record) {
    defaults.setData(key, writeCompactJson(toJson(record)));
}

/// 72 characters, each of them allowed in a verifier (RFC 7636, section 4.1).
std::string twoUuids(RandomSource& source) {
    const Uuid first = randomUuid(source), second = randomUuid(source);
    return first.text() + second.text();
}

} // namespace

std::string VeskAuthSessionStore::installationID() {
    UserDefaults& defaults = platform_.userDefaults();
    if (const auto known = trimmedOrAbsent(defaults.string(installationKey))) return *known;
    std::string made = randomUuid(platform_.randomSource()).lowercaseText();
    defaults.setString(installationKey, made);
    return made;
}

std::optional<VeskPendingAuthSession> VeskAuthSessionStore::pendingSession() const {
    return stored<VeskPendingAuthSession>(platform_.userDefaults(), pendingSessionKey);
}

std::optional<VeskAuthSignOutTransaction> VeskAuthSessionStore::signOutTransaction() const {
    return stored<VeskAuthSignOutTransaction>(platform_.userDefaults(), signOutKey);
}

std::optional<VeskAuthAssistantResumeIntent> VeskAuthSessionStore::assistantDesiredState() const {
    return stored<VeskAuthAssistantResumeIntent>(platform_.userDefaults(), desiredStateKey);
}

void VeskAuthSessionStore::persistAssistantDesiredState(const VeskAuthAssistantResumeIntent& intent) {
    store(platform_.userDefaults(), desiredStateKey, intent);
}

VeskAuthAssistantResumeIntent VeskAuthSessionStore::seedAssistantDesiredStateIfAbsent(bool installed, bool running) {
    if (const auto known = assistantDesiredState()) return *known;
    const VeskAuthAssistantResumeIntent intent(installed, running);
    persistAssistantDesiredState(intent);
    return intent;
}

void VeskAuthSessionStore::persistSignOutTransaction(const VeskAuthSignOutTransaction& transaction) {
    store(platform_.userDefaults(), signOutKey, transaction);
}

void VeskAuthSessionStore::clearSignOutTransaction() { platform_.userDefaults().remove(signOutKey); }

VeskPreparedAuthRequest VeskAuthSessionStore::prepareSignIn(const std::string& email) {
    VeskPendingAuthSession session{.email = lowercased(trimmed(email)),
                                   .codeVerifier = twoUuids(platform_.randomSource()),
                                   .clientState = twoUuids(platform_.randomSource()),
                                   .createdAt = {platform_.clock().now()}};
    const auto signOut = signOutTransaction();
    session.assistantResumeIntent = signOut ? signOut->resumeIntent : assistantDesiredState();
    persistPendingSession(session);
    std::string challenge = VeskAuthPKCE::s256CodeChallenge(session.codeVerifier);
    return {installationID(), std::move(session), std::move(challenge)};
}

void VeskAuthSessionStore::persistPendingSession(const VeskPendingAuthSession& session) {
    store(platform_.userDefaults(), pendingSessionKey, session);
}

void VeskAuthSessionStore::clearPendingSession() { platform_.userDefaults().remove(pendingSessionKey); }

} // namespace vesk
