#pragma once

#include "VeskShellCore/PackagedConnectors.hpp"
#include "VeskShellCore/PackagedDoctorReport.hpp"
#include "VeskShellCore/PackagedServiceStatus.hpp"
#include "VeskSupport/Records.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// What the shell's client and the runtime say to each other around the records that callers see. Payloads have keys in
// snake_case, answers in camelCase. The `ok` of an answer is read and not looked at: a runtime that fails exits with
// another status than 0.

namespace vesk {

struct ConnectorConnectPayload {
    std::optional<std::string> email;
    std::optional<std::string> apiKey;
    std::optional<std::string> clientState;
    std::optional<std::string> grant;

    bool operator==(const ConnectorConnectPayload&) const = default;
};

template <>
inline constexpr auto recordTable<ConnectorConnectPayload> =
    recordFields(optional("email", &ConnectorConnectPayload::email),
                 optional("api_key", &ConnectorConnectPayload::apiKey),
                 optional("client_state", &ConnectorConnectPayload::clientState),
                 optional("grant", &ConnectorConnectPayload::grant));

struct TelegramBotTokenValidationPayload {
    std::string botToken;

    bool operator==(const TelegramBotTokenValidationPayload&) const = default;
};

template <>
inline constexpr auto recordTable<TelegramBotTokenValidationPayload> =
    recordFields(required("bot_token", &TelegramBotTokenValidationPayload::botToken));

struct PackagedMemoryMutationPayload {
    std::string text;
    std::optional<std::string> conversationId;

    bool operator==(const PackagedMemoryMutationPayload&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedMemoryMutationPayload> =
    recordFields(required("text", &PackagedMemoryMutationPayload::text),
                 optional("conversation_id", &PackagedMemoryMutationPayload::conversationId));

/// What an update came to, out of its activation record.
struct UpdateActivationOutcomePayload {
    /// A UUID in lower case.
    std::string updateID;
    std::string sourceVersion;
    std::string sourceBuild;
    std::string targetVersion;
    std::string targetBuild;
    std::string channel;
    bool assistantWasRunning = false;
    std::int64_t recoveryAttempts = 0;

    bool operator==(const UpdateActivationOutcomePayload&) const = default;
};

template <>
inline constexpr auto recordTable<UpdateActivationOutcomePayload> =
    recordFields(required("update_id", &UpdateActivationOutcomePayload::updateID),
                 required("source_version", &UpdateActivationOutcomePayload::sourceVersion),
                 required("source_build", &UpdateActivationOutcomePayload::sourceBuild),
                 required("target_version", &UpdateActivationOutcomePayload::targetVersion),
                 required("target_build", &UpdateActivationOutcomePayload::targetBuild),
                 required("channel", &UpdateActivationOutcomePayload::channel),
                 required("assistant_was_running", &UpdateActivationOutcomePayload::assistantWasRunning),
                 required("recovery_attempts", &UpdateActivationOutcomePayload::recoveryAttempts));

struct LaunchAgentOperationEnvelope {
    bool ok = false;
    std::string runtimeMode;
    std::string action;
    std::string label;
    std::string plistPath;
    PackagedServiceStatus status;

    bool operator==(const LaunchAgentOperationEnvelope&) const = default;
};

template <>
inline constexpr auto recordTable<LaunchAgentOperationEnvelope> =
    recordFields(required("ok", &LaunchAgentOperationEnvelope::ok),
                 required("runtimeMode", &LaunchAgentOperationEnvelope::runtimeMode),
                 required("action", &LaunchAgentOperationEnvelope::action),
                 required("label", &LaunchAgentOperationEnvelope::label),
                 required("plistPath", &LaunchAgentOperationEnvelope::plistPath),
                 required("status", &LaunchAgentOperationEnvelope::status));

struct ConnectorOperationEnvelope {
    bool ok = false;
    std::string runtimeMode;
    std::string action;
    std::string connectorId;
    PackagedConnectorDetailReport detail;
    std::optional<std::string> authorizationUrl;

    bool operator==(const ConnectorOperationEnvelope&) const = default;
};

template <>
inline constexpr auto recordTable<ConnectorOperationEnvelope> =
    recordFields(required("ok", &ConnectorOperationEnvelope::ok),
                 required("runtimeMode", &ConnectorOperationEnvelope::runtimeMode),
                 required("action", &ConnectorOperationEnvelope::action),
                 required("connectorId", &ConnectorOperationEnvelope::connectorId),
                 required("detail", &ConnectorOperationEnvelope::detail),
                 optional("authorizationUrl", &ConnectorOperationEnvelope::authorizationUrl));

struct CompleteOnboardingResponse {
    bool ok = false;
    PackagedDoctorReport doctor;

    bool operator==(const CompleteOnboardingResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CompleteOnboardingResponse> = recordFields(
    required("ok", &CompleteOnboardingResponse::ok), required("doctor", &CompleteOnboardingResponse::doctor));

struct SettingsMutationResponse {
    bool ok = false;
    std::string settingsPath;

    bool operator==(const SettingsMutationResponse&) const = default;
};

template <>
inline constexpr auto recordTable<SettingsMutationResponse> = recordFields(
    required("ok", &SettingsMutationResponse::ok), required("settingsPath", &SettingsMutationResponse::settingsPath));

struct SecretsMutationResponse {
    bool ok = false;
    std::vector<std::string> wroteAccounts;

    bool operator==(const SecretsMutationResponse&) const = default;
};

template <>
inline constexpr auto recordTable<SecretsMutationResponse> = recordFields(
    required("ok", &SecretsMutationResponse::ok), required("wroteAccounts", &SecretsMutationResponse::wroteAccounts));

struct SecretDeletionResponse {
    bool ok = false;
    std::string account;

    bool operator==(const SecretDeletionResponse&) const = default;
};

template <>
inline constexpr auto recordTable<SecretDeletionResponse> =
    recordFields(required("ok", &SecretDeletionResponse::ok), required("account", &SecretDeletionResponse::account));

struct GenericOKResponse {
    bool ok = false;

    bool operator==(const GenericOKResponse&) const = default;
};

template <> inline constexpr auto recordTable<GenericOKResponse> = recordFields(required("ok", &GenericOKResponse::ok));

} // namespace vesk
