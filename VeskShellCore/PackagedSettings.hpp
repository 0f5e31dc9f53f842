#pragma once

#include "VeskSupport/Records.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// The settings file of the packaged runtime, as the runtime and the shell exchange it. Every section and every field in
// one may be absent.

namespace vesk {

struct AppSettings {
    std::optional<bool> onboardingCompleted{};
    std::optional<std::string> accountEmail{};
    std::optional<std::string> accountUserID{};
    std::optional<std::string> defaultTimezone{};

    bool operator==(const AppSettings&) const = default;
};

template <>
inline constexpr auto recordTable<AppSettings> =
    recordFields(optional("onboarding_completed", &AppSettings::onboardingCompleted),
                 optional("account_email", &AppSettings::accountEmail),
                 optional("account_user_id", &AppSettings::accountUserID),
                 optional("default_timezone", &AppSettings::defaultTimezone));

/// What the user said of themselves.
struct ProfileSettings {
    std::optional<std::string> preferredName{};
    std::optional<std::string> profession{};
    std::optional<std::string> city{};
    std::optional<std::string> postalCode{};

    bool operator==(const ProfileSettings&) const = default;
};

template <>
inline constexpr auto recordTable<ProfileSettings> =
    recordFields(optional("preferred_name", &ProfileSettings::preferredName),
                 optional("profession", &ProfileSettings::profession), optional("city", &ProfileSettings::city),
                 optional("postal_code", &ProfileSettings::postalCode));

/// Who may write to the bot. `allowedChatID` and `allowedChatIDs` are separate: neither fills the other.
struct TelegramSettings {
    std::optional<std::string> allowedUserID{};
    std::optional<std::string> allowedChatID{};
    std::optional<std::vector<std::string>> allowedChatIDs{};
    std::optional<std::string> allowedUsername{};

    bool operator==(const TelegramSettings&) const = default;
};

template <>
inline constexpr auto recordTable<TelegramSettings> =
    recordFields(optional("allowed_user_id", &TelegramSettings::allowedUserID),
                 optional("allowed_chat_id", &TelegramSettings::allowedChatID),
                 optional("allowed_chat_ids", &TelegramSettings::allowedChatIDs),
                 optional("allowed_username", &TelegramSettings::allowedUsername));

struct AdminWebSettings {
    std::optional<bool> enabled{};
    std::optional<std::string> host{};
    std::optional<std::int64_t> port{};

    bool operator==(const AdminWebSettings&) const = default;
};

template <>
inline constexpr auto recordTable<AdminWebSettings> =
    recordFields(optional("enabled", &AdminWebSettings::enabled), optional("host", &AdminWebSettings::host),
                 optional("port", &AdminWebSettings::port));

struct ModelSettings {
    std::optional<std::string> assistantModel{};
    std::optional<std::string> thinModel{};
    std::optional<std::string> imageSketchModel{};

    bool operator==(const ModelSettings&) const = default;
};

template <>
inline constexpr auto recordTable<ModelSettings> =
    recordFields(optional("assistant_model", &ModelSettings::assistantModel),
                 optional("thin_model", &ModelSettings::thinModel),
                 optional("image_sketch_model", &ModelSettings::imageSketchModel));

struct ProviderSettings {
    std::optional<std::string> activeProvider{};

    bool operator==(const ProviderSettings&) const = default;
};

template <>
inline constexpr auto recordTable<ProviderSettings> =
    recordFields(optional("active_provider", &ProviderSettings::activeProvider));

struct AuthSettings {
    std::optional<std::string> baseURL{};
    std::optional<std::string> appVersion{};

    bool operator==(const AuthSettings&) const = default;
};

template <>
inline constexpr auto recordTable<AuthSettings> =
    recordFields(optional("base_url", &AuthSettings::baseURL), optional("app_version", &AuthSettings::appVersion));

/// The whole settings file, or the part of it that is to be merged: only the version of the schema must be there.
/// Secrets have no field; they reach the runtime by a command of their own.
struct PackagedSettings {
    std::int64_t schemaVersion = 0;
    std::optional<AppSettings> app{};
    std::optional<ProfileSettings> profile{};
    std::optional<TelegramSettings> telegram{};
    std::optional<AdminWebSettings> adminWeb{};
    std::optional<ModelSettings> models{};
    std::optional<ProviderSettings> providers{};
    std::optional<AuthSettings> auth{};

    bool operator==(const PackagedSettings&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedSettings> =
    recordFields(required("schema_version", &PackagedSettings::schemaVersion), optional("app", &PackagedSettings::app),
                 optional("profile", &PackagedSettings::profile), optional("telegram", &PackagedSettings::telegram),
                 optional("admin_web", &PackagedSettings::adminWeb), optional("models", &PackagedSettings::models),
                 optional("providers", &PackagedSettings::providers), optional("auth", &PackagedSettings::auth));

} // namespace vesk
