#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/AuthSessionModels.hpp"

#include <optional>
#include <string>

namespace vesk {

/// The state of signing in and out that outlives the process, in the user defaults. For one serial user: a sequence of
/// reading and writing is not one step. Nothing fails but the source of random numbers (PosixError): what is not there
/// or does not decode reads as nothing and stays until the next value replaces it, and what cannot be written leaves
/// the old value. Sessions do not expire here; `createdAt` is the callers' to judge.
class VeskAuthSessionStore {
public:
    /// The platform outlives the store.
    explicit VeskAuthSessionStore(Platform& platform) : platform_(platform) {}

    /// Made when first asked for and never removed: a UUID in lower case.
    std::string installationID();
    std::optional<VeskPendingAuthSession> pendingSession() const;
    std::optional<VeskAuthSignOutTransaction> signOutTransaction() const;
    std::optional<VeskAuthAssistantResumeIntent> assistantDesiredState() const;

    void persistAssistantDesiredState(const VeskAuthAssistantResumeIntent& intent);
    /// What is stored wins over what is seen now.
    VeskAuthAssistantResumeIntent seedAssistantDesiredStateIfAbsent(bool installed, bool running);
    /// Any phase at any time; the order is the callers'.
    void persistSignOutTransaction(const VeskAuthSignOutTransaction& transaction);
    void clearSignOutTransaction();
    /// Makes and stores a new pending session in place of an earlier one: of several links, only the newest can be
    /// redeemed. It takes up the intent of a sign-out that is remembered, else the desired state.
    VeskPreparedAuthRequest prepareSignIn(const std::string& email);
    void persistPendingSession(const VeskPendingAuthSession& session);
    void clearPendingSession();

private:
    Platform& platform_;
};

} // namespace vesk
