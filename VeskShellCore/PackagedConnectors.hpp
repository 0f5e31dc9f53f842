#pragma once

#include "VeskSupport/Records.hpp"

#include <optional>
#include <string>
#include <vector>

// The connectors of the packaged runtime. All words are the runtime's own and are passed on as text.

namespace vesk {

/// An account that a connector knows.
struct PackagedConnectorAccount {
    std::string id;
    std::optional<std::string> email{};
    std::optional<std::string> displayName{};
    std::optional<std::string> authorUrn{};
    std::optional<std::string> client{};
    std::vector<std::string> services{};
    std::vector<std::string> scopes{};
    std::optional<std::string> createdAt{};
    std::optional<std::string> authKind{};

    bool operator==(const PackagedConnectorAccount&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedConnectorAccount> =
    recordFields(required("id", &PackagedConnectorAccount::id), optional("email", &PackagedConnectorAccount::email),
                 optional("displayName", &PackagedConnectorAccount::displayName).orElse("display_name"),
                 optional("authorUrn", &PackagedConnectorAccount::authorUrn).orElse("author_urn"),
                 optional("client", &PackagedConnectorAccount::client),
                 defaulted("services", &PackagedConnectorAccount::services),
                 defaulted("scopes", &PackagedConnectorAccount::scopes),
                 optional("createdAt", &PackagedConnectorAccount::createdAt).orElse("created_at"),
                 optional("authKind", &PackagedConnectorAccount::authKind).orElse("auth"));

/// What a connector says about its sign-in. Connectors differ in their spelling of the keys, so both are read; the
/// first is written.
struct PackagedConnectorAuthStatus {
    std::optional<std::string> primaryAccountId{};
    std::optional<std::string> primaryEmail{};
    std::optional<std::string> primaryDisplayName{};
    std::optional<std::string> authPreferred{};
    bool credentialsPresent = false;
    std::optional<std::string> credentialsPath{};
    bool serviceAccountConfigured = false;
    std::optional<std::string> keyringBackend{};
    std::optional<std::string> keyringSource{};
    std::vector<PackagedConnectorAccount> accounts{};

    bool operator==(const PackagedConnectorAuthStatus&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedConnectorAuthStatus> = recordFields(
    optional("primaryAccountId", &PackagedConnectorAuthStatus::primaryAccountId).orElse("primary_account_id"),
    optional("primaryEmail", &PackagedConnectorAuthStatus::primaryEmail).orElse("primary_email"),
    optional("primaryDisplayName", &PackagedConnectorAuthStatus::primaryDisplayName).orElse("primary_display_name"),
    optional("authPreferred", &PackagedConnectorAuthStatus::authPreferred).orElse("auth_preferred"),
    defaulted("credentialsPresent", &PackagedConnectorAuthStatus::credentialsPresent).orElse("credentials_present"),
    optional("credentialsPath", &PackagedConnectorAuthStatus::credentialsPath).orElse("credentials_path"),
    defaulted("serviceAccountConfigured", &PackagedConnectorAuthStatus::serviceAccountConfigured)
        .orElse("service_account_configured"),
    optional("keyringBackend", &PackagedConnectorAuthStatus::keyringBackend).orElse("keyring_backend"),
    optional("keyringSource", &PackagedConnectorAuthStatus::keyringSource).orElse("keyring_source"),
    defaulted("accounts", &PackagedConnectorAuthStatus::accounts));

/// A program that connects the assistant with a service outside.
struct PackagedConnectorStatus {
    std::string id;
    std::string displayName;
    std::optional<std::string> description{};
    std::string binaryName;
    bool managedByVesk = false;
    std::string availability;
    bool installed = false;
    bool ready = false;
    std::optional<std::string> activeVersion{};
    std::optional<std::string> latestVersion{};
    bool updateAvailable = false;
    std::optional<std::string> binaryPath{};
    std::optional<std::string> installRoot{};
    std::optional<std::string> authKind{};
    std::vector<std::string> authServices;
    bool installable = false;

    bool operator==(const PackagedConnectorStatus&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedConnectorStatus> = recordFields(
    required("id", &PackagedConnectorStatus::id), required("displayName", &PackagedConnectorStatus::displayName),
    optional("description", &PackagedConnectorStatus::description),
    required("binaryName", &PackagedConnectorStatus::binaryName),
    required("managedByVesk", &PackagedConnectorStatus::managedByVesk),
    required("availability", &PackagedConnectorStatus::availability),
    required("installed", &PackagedConnectorStatus::installed), required("ready", &PackagedConnectorStatus::ready),
    optional("activeVersion", &PackagedConnectorStatus::activeVersion),
    optional("latestVersion", &PackagedConnectorStatus::latestVersion),
    required("updateAvailable", &PackagedConnectorStatus::updateAvailable),
    optional("binaryPath", &PackagedConnectorStatus::binaryPath),
    optional("installRoot", &PackagedConnectorStatus::installRoot),
    optional("authKind", &PackagedConnectorStatus::authKind),
    required("authServices", &PackagedConnectorStatus::authServices),
    required("installable", &PackagedConnectorStatus::installable));

struct PackagedConnectorCatalogReport {
    std::string runtimeMode;
    std::vector<PackagedConnectorStatus> connectors;

    bool operator==(const PackagedConnectorCatalogReport&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedConnectorCatalogReport> =
    recordFields(required("runtimeMode", &PackagedConnectorCatalogReport::runtimeMode),
                 required("connectors", &PackagedConnectorCatalogReport::connectors));

struct PackagedConnectorDetailReport {
    std::string runtimeMode;
    PackagedConnectorStatus connector;
    std::string connectionState;
    std::string detail;
    std::optional<PackagedConnectorAuthStatus> authStatus{};

    bool operator==(const PackagedConnectorDetailReport&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedConnectorDetailReport> =
    recordFields(required("runtimeMode", &PackagedConnectorDetailReport::runtimeMode),
                 required("connector", &PackagedConnectorDetailReport::connector),
                 required("connectionState", &PackagedConnectorDetailReport::connectionState),
                 required("detail", &PackagedConnectorDetailReport::detail),
                 optional("authStatus", &PackagedConnectorDetailReport::authStatus));

} // namespace vesk
