#pragma once

#include "VeskShellCore/BootstrapState.hpp"
#include "VeskShellCore/CapabilityModels.hpp"
#include "VeskSupport/Records.hpp"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

// The readiness of the packaged runtime: computed by the runtime, displayed by the shell. All words and codes are the
// runtime's own and are passed on as text.

namespace vesk {

/// The runtime's diagnosis of itself: what is configured, what is missing and which step of the onboarding comes next.
struct PackagedDoctorReport {
    /// Every key may be missing; a missing count of authorized or pending chats is the length of its list.
    struct TelegramStatus {
        bool botTokenPresent = false;
        std::optional<std::string> botTokenSource{};
        bool allowlistConfigured = false;
        std::optional<std::string> allowlistSource{};
        bool bootstrapUsernameConfigured = false;
        bool ownerConfigured = false;
        bool ownerBound = false;
        bool groupChatsConfigured = false;
        std::optional<std::string> allowedUsername{};
        std::optional<std::string> allowedUserID{};
        std::vector<std::string> allowedChatIDs{};
        std::vector<std::string> pendingChatIDs{};
        std::int64_t discoveredChatCount = 0;
        std::int64_t authorizedChatCount = 0;
        std::int64_t pendingChatCount = 0;
        std::optional<std::string> botUsername{};
        std::optional<bool> canReadAllGroupMessages{};
        std::optional<std::string> liveReachabilityStatus{};
        std::int64_t reachableChatCount = 0;
        std::int64_t unreachableChatCount = 0;
        std::optional<std::string> liveReachabilityError{};

        bool operator==(const TelegramStatus&) const = default;
    };

    /// The provider of models, and whether its key is there.
    struct ProviderStatus {
        std::optional<std::string> lockedProvider{};
        std::optional<std::string> providerSource{};
        std::optional<std::string> apiKeyEnvKey{};
        bool apiKeyPresent = false;
        std::optional<std::string> apiKeySource{};

        bool operator==(const ProviderStatus&) const = default;
    };

    /// The sign-in to the user's account.
    struct AuthStatus {
        bool tokenPresent = false;
        std::optional<std::string> tokenSource{};
        std::optional<std::string> accountEmail{};
        std::optional<std::string> baseURL{};

        bool operator==(const AuthStatus&) const = default;
    };

    /// The bridge to this machine, and what the broker last reported through it about the permissions.
    struct NativeStatus {
        std::string bridgeDirectory;
        bool bridgeStatePresent = false;
        bool bridgeRunning = false;
        bool bridgeStateFresh = false;
        std::optional<std::string> appBundlePath{};
        std::optional<std::string> executablePath{};
        /// Milliseconds since 1970.
        std::optional<std::int64_t> capabilityReportUpdatedAtMs{};
        std::vector<CapabilityKind> requiredCapabilities;
        bool ready = false;
        std::vector<CapabilityKind> missingCapabilities;
        std::vector<CapabilityStatus> capabilities;

        bool operator==(const NativeStatus&) const = default;
    };

    /// Where a report has none at all, it is no further than `onboardingCompleted` says.
    struct OnboardingStatus {
        bool completed = false;
        bool readyToComplete = false;
        std::vector<BootstrapOnboardingStep> steps{};
        std::vector<BootstrapNextAction> nextActions{};

        bool operator==(const OnboardingStatus&) const = default;
    };

    std::string runtimeMode;
    bool ready = false;
    bool settingsPresent = false;
    bool onboardingCompleted = false;
    std::string settingsPath;
    std::string appSupportDir;
    std::map<std::string, BootstrapDirectoryState> directories{};
    TelegramStatus telegram{};
    ProviderStatus provider{};
    AuthStatus auth{};
    NativeStatus native{};
    std::vector<BootstrapRequiredPlatformToolState> requiredPlatformTools{};
    OnboardingStatus onboarding{};
    std::vector<BootstrapIssue> issues{};

    bool operator==(const PackagedDoctorReport&) const = default;
};

inline std::int64_t countOfAllowedChats(const PackagedDoctorReport::TelegramStatus& status) {
    return static_cast<std::int64_t>(status.allowedChatIDs.size());
}
inline std::int64_t countOfPendingChats(const PackagedDoctorReport::TelegramStatus& status) {
    return static_cast<std::int64_t>(status.pendingChatIDs.size());
}
template <>
inline constexpr auto recordTable<PackagedDoctorReport::TelegramStatus> = recordFields(
    defaulted("botTokenPresent", &PackagedDoctorReport::TelegramStatus::botTokenPresent),
    optional("botTokenSource", &PackagedDoctorReport::TelegramStatus::botTokenSource),
    defaulted("allowlistConfigured", &PackagedDoctorReport::TelegramStatus::allowlistConfigured),
    optional("allowlistSource", &PackagedDoctorReport::TelegramStatus::allowlistSource),
    defaulted("bootstrapUsernameConfigured", &PackagedDoctorReport::TelegramStatus::bootstrapUsernameConfigured),
    defaulted("ownerConfigured", &PackagedDoctorReport::TelegramStatus::ownerConfigured),
    defaulted("ownerBound", &PackagedDoctorReport::TelegramStatus::ownerBound),
    defaulted("groupChatsConfigured", &PackagedDoctorReport::TelegramStatus::groupChatsConfigured),
    optional("allowedUsername", &PackagedDoctorReport::TelegramStatus::allowedUsername),
    optional("allowedUserId", &PackagedDoctorReport::TelegramStatus::allowedUserID),
    defaulted("allowedChatIds", &PackagedDoctorReport::TelegramStatus::allowedChatIDs),
    defaulted("pendingChatIds", &PackagedDoctorReport::TelegramStatus::pendingChatIDs),
    defaulted("discoveredChatCount", &PackagedDoctorReport::TelegramStatus::discoveredChatCount),
    derived("authorizedChatCount", &PackagedDoctorReport::TelegramStatus::authorizedChatCount, &countOfAllowedChats),
    derived("pendingChatCount", &PackagedDoctorReport::TelegramStatus::pendingChatCount, &countOfPendingChats),
    optional("botUsername", &PackagedDoctorReport::TelegramStatus::botUsername),
    optional("canReadAllGroupMessages", &PackagedDoctorReport::TelegramStatus::canReadAllGroupMessages),
    optional("liveReachabilityStatus", &PackagedDoctorReport::TelegramStatus::liveReachabilityStatus),
    defaulted("reachableChatCount", &PackagedDoctorReport::TelegramStatus::reachableChatCount),
    defaulted("unreachableChatCount", &PackagedDoctorReport::TelegramStatus::unreachableChatCount),
    optional("liveReachabilityError", &PackagedDoctorReport::TelegramStatus::liveReachabilityError));

template <>
inline constexpr auto recordTable<PackagedDoctorReport::ProviderStatus> =
    recordFields(optional("lockedProvider", &PackagedDoctorReport::ProviderStatus::lockedProvider),
                 optional("providerSource", &PackagedDoctorReport::ProviderStatus::providerSource),
                 optional("apiKeyEnvKey", &PackagedDoctorReport::ProviderStatus::apiKeyEnvKey),
                 required("apiKeyPresent", &PackagedDoctorReport::ProviderStatus::apiKeyPresent),
                 optional("apiKeySource", &PackagedDoctorReport::ProviderStatus::apiKeySource));

template <>
inline constexpr auto recordTable<PackagedDoctorReport::AuthStatus> =
    recordFields(required("tokenPresent", &PackagedDoctorReport::AuthStatus::tokenPresent),
                 optional("tokenSource", &PackagedDoctorReport::AuthStatus::tokenSource),
                 optional("accountEmail", &PackagedDoctorReport::AuthStatus::accountEmail),
                 optional("baseUrl", &PackagedDoctorReport::AuthStatus::baseURL));

template <>
inline constexpr auto recordTable<PackagedDoctorReport::NativeStatus> = recordFields(
    required("bridgeDirectory", &PackagedDoctorReport::NativeStatus::bridgeDirectory),
    required("bridgeStatePresent", &PackagedDoctorReport::NativeStatus::bridgeStatePresent),
    required("bridgeRunning", &PackagedDoctorReport::NativeStatus::bridgeRunning),
    required("bridgeStateFresh", &PackagedDoctorReport::NativeStatus::bridgeStateFresh),
    optional("appBundlePath", &PackagedDoctorReport::NativeStatus::appBundlePath),
    optional("executablePath", &PackagedDoctorReport::NativeStatus::executablePath),
    optional("capabilityReportUpdatedAtMs", &PackagedDoctorReport::NativeStatus::capabilityReportUpdatedAtMs),
    required("requiredCapabilities", &PackagedDoctorReport::NativeStatus::requiredCapabilities),
    required("ready", &PackagedDoctorReport::NativeStatus::ready),
    required("missingCapabilities", &PackagedDoctorReport::NativeStatus::missingCapabilities),
    required("capabilities", &PackagedDoctorReport::NativeStatus::capabilities));

template <>
inline constexpr auto recordTable<PackagedDoctorReport::OnboardingStatus> =
    recordFields(required("completed", &PackagedDoctorReport::OnboardingStatus::completed),
                 required("readyToComplete", &PackagedDoctorReport::OnboardingStatus::readyToComplete),
                 required("steps", &PackagedDoctorReport::OnboardingStatus::steps),
                 required("nextActions", &PackagedDoctorReport::OnboardingStatus::nextActions));

inline PackagedDoctorReport::OnboardingStatus onboardingStandIn(const PackagedDoctorReport& report) {
    return {.completed = report.onboardingCompleted};
}
template <>
inline constexpr auto recordTable<PackagedDoctorReport> = recordFields(
    required("runtimeMode", &PackagedDoctorReport::runtimeMode), required("ready", &PackagedDoctorReport::ready),
    defaulted("settingsPresent", &PackagedDoctorReport::settingsPresent),
    required("onboardingCompleted", &PackagedDoctorReport::onboardingCompleted),
    required("settingsPath", &PackagedDoctorReport::settingsPath),
    required("appSupportDir", &PackagedDoctorReport::appSupportDir),
    defaulted("directories", &PackagedDoctorReport::directories),
    defaulted("telegram", &PackagedDoctorReport::telegram), defaulted("provider", &PackagedDoctorReport::provider),
    defaulted("auth", &PackagedDoctorReport::auth), defaulted("native", &PackagedDoctorReport::native),
    defaulted("requiredPlatformTools", &PackagedDoctorReport::requiredPlatformTools),
    derived("onboarding", &PackagedDoctorReport::onboarding, &onboardingStandIn),
    defaulted("issues", &PackagedDoctorReport::issues));

} // namespace vesk
