#include "vesk/SignInCommand.hpp"

#include "VeskShellCore/KeychainStore.hpp"
#include "VeskShellCore/VeskAuthClient.hpp"
#include "VeskShellCore/VeskAuthInvalidationProbe.hpp"
#include "VeskShellCore/VeskAuthRecoveryStore.hpp"
#include "VeskShellCore/VeskAuthSessionStore.hpp"
#include "VeskSupport/RunToTheEnd.hpp"
#include "VeskSupport/Text.hpp"
#include "vesk/CompanionError.hpp"
#include "vesk/HostName.hpp"
#include "vesk/StandardInput.hpp"
#include "vesk/Version.hpp"

#include <functional>
#include <utility>

namespace vesk {

/// Who has signed in, without the credentials.
struct SignedIn {
    std::string accountEmail;
    std::string userID;
    std::string deviceID;
    bool recoveryGrantCleared = false;
};

template <>
inline constexpr auto recordTable<SignedIn> =
    recordFields(required("accountEmail", &SignedIn::accountEmail), required("userID", &SignedIn::userID),
                 required("deviceID", &SignedIn::deviceID),
                 required("recoveryGrantCleared", &SignedIn::recoveryGrantCleared));

/// How a sign-in stands. `grantPending` is left out where the keychain cannot tell.
struct SignInStatus {
    std::string installationID;
    std::optional<std::string> pendingEmail;
    std::optional<Instant> pendingSince;
    std::optional<bool> grantPending;
    bool invalidated = false;
};

template <>
inline constexpr auto recordTable<SignInStatus> = recordFields(
    required("installationID", &SignInStatus::installationID), optional("pendingEmail", &SignInStatus::pendingEmail),
    optional("pendingSince", &SignInStatus::pendingSince), optional("grantPending", &SignInStatus::grantPending),
    required("invalidated", &SignInStatus::invalidated));

namespace {

constexpr std::uint64_t mostGrantBytes = std::uint64_t{1} << 16;

VeskAuthClient clientOf(const SignInCommand& command, Platform& platform) {
    return {platform, builtVersion().authOrigin, command.baseURL};
}

KeychainStore keychainOf(Platform& platform) { return {platform.keychainItems(), liveKeychainService}; }

JsonValue start(const SignInCommand& command, Platform& platform) {
    const VeskAuthClient client = clientOf(command, platform);
    VeskAuthSessionStore store(platform);
    const VeskPreparedAuthRequest prepared = store.prepareSignIn(command.email);
    const VeskPendingAuthSession& session = prepared.pendingSession;
    if (store.pendingSession() != session) // a link would lead nowhere
        throw CompanionError(CompanionError::Kind::notKept, "The sign-in cannot be kept in the state folder.");
    return toJson(answerOf(client.requestSignInLink(session.email, prepared.installationID, prepared.codeChallenge,
                                                    session.clientState, builtVersion().version, "linux")));
}

std::string grantOf(const SignInCommand& command, const VeskAuthRecoveryStore& recovery) {
    if (command.pending) {
        if (const auto kept = recovery.pendingGrant()) return *kept;
        throw CompanionError(CompanionError::Kind::noGrant, "No grant is kept from an earlier try.");
    }
    std::string grant = readTextFromStandardInput(mostGrantBytes);
    if (isBlank(grant)) throw CompanionError(CompanionError::Kind::noGrant, "There is no grant on standard input.");
    return grant;
}

/// Everything that must happen for a grant to be spent.
Task<SignedIn> redeemAndKeep(VeskAuthClient client, std::string grant, std::string installationID,
                             VeskPendingAuthSession session, KeychainStore keychain) {
    Task<VeskAuthRedeemResponse> redemption =
        client.redeem(std::move(grant), std::move(installationID), session.codeVerifier, session.clientState,
                      builtVersion().version, hostName());
    const VeskAuthRedeemResponse account = co_await std::move(redemption);
    keychain.upsert(KeychainAccount::veskAuthToken, account.authToken);
    keychain.upsert(KeychainAccount::openRouterAPIKey, account.openRouterAPIKey);
    co_return SignedIn{account.accountEmail, account.userID, account.deviceID};
}

JsonValue redeem(const SignInCommand& command, Platform& platform) {
    VeskAuthSessionStore store(platform);
    const auto session = store.pendingSession();
    if (!session)
        throw CompanionError(CompanionError::Kind::noSession, "No sign-in is waiting; begin with vesk sign-in start.");
    const VeskAuthClient client = clientOf(command, platform);
    const KeychainStore keychain = keychainOf(platform);
    const VeskAuthRecoveryStore recovery(keychain);
    const std::string grant(trimmed(grantOf(command, recovery)));
    const std::function<Task<SignedIn>()> operation = [&] {
        return redeemAndKeep(client, grant, store.installationID(), *session, keychain);
    };
    auto commit = answerOf(withRecoverableAuthGrant<SignedIn>(grant, recovery, operation));
    if (store.pendingSession() == session) store.clearPendingSession(); // and no link that was asked for meanwhile
    commit.value.recoveryGrantCleared = commit.recoveryGrantCleared;
    return toJson(commit.value);
}

std::optional<bool> isGrantPending(Platform& platform) {
    try {
        return VeskAuthRecoveryStore(keychainOf(platform)).pendingGrant().has_value();
    } catch (const ErrorRecord&) { // the rest of the status is worth telling all the same
        return std::nullopt;
    }
}

JsonValue status(Platform& platform) {
    VeskAuthSessionStore store(platform);
    SignInStatus status{.installationID = store.installationID(),
                        .pendingEmail = {},
                        .pendingSince = {},
                        .grantPending = isGrantPending(platform)};
    if (const auto session = store.pendingSession()) {
        status.pendingEmail = session->email;
        status.pendingSince = session->createdAt.instant;
    }
    const VeskAuthInvalidationProbe probe(platform, VeskAuthInvalidationProbe::defaultMarkerFilePath(platform));
    status.invalidated = answerOf(probe.isInvalidated());
    return toJson(status);
}

JsonValue cancel(Platform& platform) {
    VeskAuthSessionStore store(platform);
    store.clearPendingSession();
    VeskAuthRecoveryStore(keychainOf(platform)).clear();
    if (store.pendingSession()) // its link could still be followed
        throw CompanionError(CompanionError::Kind::notKept, "The sign-in cannot be removed from the state folder.");
    return {JsonValue::Object{}};
}

JsonValue answer(const SignInCommand& command, Platform& platform) {
    switch (command.verb) {
    case SignInVerb::start: return start(command, platform);
    case SignInVerb::redeem: return redeem(command, platform);
    case SignInVerb::status: return status(platform);
    case SignInVerb::cancel: return cancel(platform);
    }
    return {};
}

} // namespace

std::string runSignIn(const SignInCommand& command, Platform& platform) {
    return writeJson(answer(command, platform)) + "\n";
}

} // namespace vesk
