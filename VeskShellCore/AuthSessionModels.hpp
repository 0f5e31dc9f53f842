#pragma once

#include "VeskShellCore/ReferenceDate.hpp"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

// What is kept between asking for a sign-in link and following it, and through a sign-out.

namespace vesk {

/// What the assistant should return to.
struct VeskAuthAssistantResumeIntent {
    VeskAuthAssistantResumeIntent() = default;
    /// A running assistant is an installed one. What is read is taken as it stands.
    VeskAuthAssistantResumeIntent(bool installed, bool running)
        : wasInstalled(installed || running), wasRunning(running) {}

    bool wasInstalled = false;
    bool wasRunning = false;

    bool operator==(const VeskAuthAssistantResumeIntent&) const = default;
};

template <>
inline constexpr auto recordTable<VeskAuthAssistantResumeIntent> =
    recordFields(required("wasInstalled", &VeskAuthAssistantResumeIntent::wasInstalled),
                 required("wasRunning", &VeskAuthAssistantResumeIntent::wasRunning));

/// The sign-in in flight. The verifier is used once and is no lasting secret.
struct VeskPendingAuthSession {
    /// Trimmed, in lower case.
    std::string email;
    std::string codeVerifier;
    std::string clientState;
    ReferenceDate createdAt{};
    /// Where the assistant goes after the sign-in.
    std::optional<VeskAuthAssistantResumeIntent> assistantResumeIntent{};

    bool operator==(const VeskPendingAuthSession&) const = default;
};

template <>
inline constexpr auto recordTable<VeskPendingAuthSession> =
    recordFields(required("email", &VeskPendingAuthSession::email),
                 required("codeVerifier", &VeskPendingAuthSession::codeVerifier),
                 required("clientState", &VeskPendingAuthSession::clientState),
                 required("createdAt", &VeskPendingAuthSession::createdAt),
                 optional("assistantResumeIntent", &VeskPendingAuthSession::assistantResumeIntent));

/// What a request for a link is made of.
struct VeskPreparedAuthRequest {
    std::string installationID;
    VeskPendingAuthSession pendingSession;
    /// Of the session's verifier.
    std::string codeChallenge;

    bool operator==(const VeskPreparedAuthRequest&) const = default;
};

/// How far a sign-out has come, in the order of progress.
enum class VeskAuthSignOutPhase { stopping, assistantStopped, signedOut };

template <>
inline constexpr auto rawValueTable<VeskAuthSignOutPhase> =
    std::to_array<std::pair<VeskAuthSignOutPhase, std::string_view>>({
        {VeskAuthSignOutPhase::stopping, "stopping"},
        {VeskAuthSignOutPhase::assistantStopped, "assistant_stopped"},
        {VeskAuthSignOutPhase::signedOut, "signed_out"},
    });

/// A sign-out in progress, or one that is done and remembers what the assistant should return to.
struct VeskAuthSignOutTransaction {
    VeskAuthAssistantResumeIntent resumeIntent;
    VeskAuthSignOutPhase phase{};

    bool operator==(const VeskAuthSignOutTransaction&) const = default;
};

template <>
inline constexpr auto recordTable<VeskAuthSignOutTransaction> =
    recordFields(required("resumeIntent", &VeskAuthSignOutTransaction::resumeIntent),
                 required("phase", &VeskAuthSignOutTransaction::phase));

} // namespace vesk
