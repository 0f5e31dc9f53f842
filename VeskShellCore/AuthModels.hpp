#pragma once

#include "VeskSupport/Records.hpp"

#include <cstdint>
#include <optional>
#include <string>

// What goes over the wire to the auth service and back.

namespace vesk {

/// Asks for a sign-in link.
struct AuthStartRequest {
    std::string email;
    std::string installationID;
    std::string codeChallenge;
    std::string codeChallengeMethod = "S256";
    std::string clientState;
    std::optional<std::string> appVersion{};
    std::string platform;

    bool operator==(const AuthStartRequest&) const = default;
};

template <>
inline constexpr auto recordTable<AuthStartRequest> = recordFields(
    required("email", &AuthStartRequest::email), required("installation_id", &AuthStartRequest::installationID),
    required("code_challenge", &AuthStartRequest::codeChallenge),
    required("code_challenge_method", &AuthStartRequest::codeChallengeMethod),
    required("client_state", &AuthStartRequest::clientState), optional("app_version", &AuthStartRequest::appVersion),
    required("platform", &AuthStartRequest::platform));

struct VeskAuthStartResponse {
    bool ok = false;
    std::string status;

    bool operator==(const VeskAuthStartResponse&) const = default;
};

template <>
inline constexpr auto recordTable<VeskAuthStartResponse> =
    recordFields(required("ok", &VeskAuthStartResponse::ok), required("status", &VeskAuthStartResponse::status));

/// Trades the grant of a link for credentials. It holds one-time secrets.
struct AuthRedeemRequest {
    std::string grant;
    std::string installationID;
    std::string codeVerifier;
    std::string clientState;
    std::optional<std::string> appVersion{};
    std::optional<std::string> deviceName{};

    bool operator==(const AuthRedeemRequest&) const = default;
};

template <>
inline constexpr auto recordTable<AuthRedeemRequest> = recordFields(
    required("grant", &AuthRedeemRequest::grant), required("installation_id", &AuthRedeemRequest::installationID),
    required("code_verifier", &AuthRedeemRequest::codeVerifier),
    required("client_state", &AuthRedeemRequest::clientState), optional("app_version", &AuthRedeemRequest::appVersion),
    optional("device_name", &AuthRedeemRequest::deviceName));

/// The account and its credentials: never logged, and kept no longer than their handling needs.
struct VeskAuthRedeemResponse {
    struct RuntimeKey {
        std::string id;
        std::string label;
        double weeklyLimitUSD = 0;
        std::string limitReset;
        std::string guardrailID;

        bool operator==(const RuntimeKey&) const = default;
    };

    bool ok = false;
    std::string accountEmail;
    std::string userID;
    std::string deviceID;
    std::string authToken;
    std::int64_t authTokenExpiresAt = 0;
    std::string openRouterAPIKey;
    std::string openRouterKeyHash;
    RuntimeKey runtimeKey;

    bool operator==(const VeskAuthRedeemResponse&) const = default;
};

template <>
inline constexpr auto recordTable<VeskAuthRedeemResponse::RuntimeKey> =
    recordFields(required("id", &VeskAuthRedeemResponse::RuntimeKey::id),
                 required("label", &VeskAuthRedeemResponse::RuntimeKey::label),
                 required("weekly_limit_usd", &VeskAuthRedeemResponse::RuntimeKey::weeklyLimitUSD),
                 required("limit_reset", &VeskAuthRedeemResponse::RuntimeKey::limitReset),
                 required("guardrail_id", &VeskAuthRedeemResponse::RuntimeKey::guardrailID));

template <>
inline constexpr auto recordTable<VeskAuthRedeemResponse> = recordFields(
    required("ok", &VeskAuthRedeemResponse::ok), required("account_email", &VeskAuthRedeemResponse::accountEmail),
    required("user_id", &VeskAuthRedeemResponse::userID), required("device_id", &VeskAuthRedeemResponse::deviceID),
    required("auth_token", &VeskAuthRedeemResponse::authToken),
    required("auth_token_expires_at", &VeskAuthRedeemResponse::authTokenExpiresAt),
    required("openrouter_api_key", &VeskAuthRedeemResponse::openRouterAPIKey),
    required("openrouter_key_hash", &VeskAuthRedeemResponse::openRouterKeyHash),
    required("runtime_key", &VeskAuthRedeemResponse::runtimeKey));

} // namespace vesk
