#include "VeskShellCore/PackagedConnectors.hpp"
#include "tests/VeskShellCore/RecordTableWalk.hpp"

namespace vesk::test {

template <> RecordSample<PackagedConnectorAccount> sampleOf() {
    return {.name = "PackagedConnectorAccount",
            .record = {.id = "a-1",
                       .email = "dana@example.com",
                       .displayName = "Dana Weiss",
                       .authorUrn = "urn:person:1",
                       .client = "desktop",
                       .services = {"mail"},
                       .scopes = {"mail.read", "mail.send"},
                       .createdAt = "2026-04-26",
                       .authKind = "oauth"},
            .required = "id",
            .optional = "email displayName authorUrn client createdAt authKind",
            .defaulted = "services scopes",
            .spellings = "displayName:display_name authorUrn:author_urn createdAt:created_at authKind:auth"};
}

template <> RecordSample<PackagedConnectorAuthStatus> sampleOf() {
    return {
        .name = "PackagedConnectorAuthStatus",
        .record = {.primaryAccountId = "account-1",
                   .primaryEmail = "dana@example.com",
                   .primaryDisplayName = "Dana Weiss",
                   .authPreferred = "oauth",
                   .credentialsPresent = true,
                   .credentialsPath = "/home/dana/credentials.json",
                   .serviceAccountConfigured = false,
                   .keyringBackend = "file",
                   .keyringSource = "settings",
                   .accounts = {{.id = "a-1", .services = {}, .scopes = {}}}},
        .optional = "primaryAccountId primaryEmail primaryDisplayName authPreferred credentialsPath keyringBackend "
                    "keyringSource",
        .defaulted = "credentialsPresent serviceAccountConfigured accounts",
        .spellings =
            "primaryAccountId:primary_account_id primaryEmail:primary_email primaryDisplayName:primary_display_name "
            "authPreferred:auth_preferred credentialsPresent:credentials_present credentialsPath:credentials_path "
            "serviceAccountConfigured:service_account_configured keyringBackend:keyring_backend "
            "keyringSource:keyring_source",
        .booleans = {{"credentialsPresent", &PackagedConnectorAuthStatus::credentialsPresent},
                     {"serviceAccountConfigured", &PackagedConnectorAuthStatus::serviceAccountConfigured}}};
}

template <> RecordSample<PackagedConnectorStatus> sampleOf() {
    return {.name = "PackagedConnectorStatus",
            .record = {.id = "mailer",
                       .displayName = "Mailer",
                       .description = "Reads mail.",
                       .binaryName = "mailer",
                       .managedByVesk = true,
                       .availability = "available",
                       .installed = false,
                       .ready = true,
                       .activeVersion = "2.0",
                       .latestVersion = "2.1",
                       .updateAvailable = false,
                       .binaryPath = "/opt/bin/driver",
                       .installRoot = "/opt/mailer",
                       .authKind = "oauth",
                       .authServices = {"mail", "calendar"},
                       .installable = true},
            .required = "id displayName binaryName managedByVesk availability installed ready updateAvailable "
                        "authServices installable",
            .optional = "description activeVersion latestVersion binaryPath installRoot authKind",
            .booleans = {{"managedByVesk", &PackagedConnectorStatus::managedByVesk},
                         {"installed", &PackagedConnectorStatus::installed},
                         {"ready", &PackagedConnectorStatus::ready},
                         {"updateAvailable", &PackagedConnectorStatus::updateAvailable},
                         {"installable", &PackagedConnectorStatus::installable}}};
}

template <> RecordSample<PackagedConnectorCatalogReport> sampleOf() {
    return {.name = "PackagedConnectorCatalogReport",
            .record = {.runtimeMode = "packaged",
                       .connectors = {{.id = "mailer",
                                       .displayName = "Mailer",
                                       .binaryName = "mailer",
                                       .managedByVesk = true,
                                       .availability = "available",
                                       .installed = false,
                                       .ready = true,
                                       .updateAvailable = false,
                                       .authServices = {},
                                       .installable = true}}},
            .required = "runtimeMode connectors"};
}

template <> RecordSample<PackagedConnectorDetailReport> sampleOf() {
    return {.name = "PackagedConnectorDetailReport",
            .record = {.runtimeMode = "packaged",
                       .connector = {.id = "mailer",
                                     .displayName = "Mailer",
                                     .binaryName = "mailer",
                                     .managedByVesk = true,
                                     .availability = "available",
                                     .installed = false,
                                     .ready = true,
                                     .updateAvailable = false,
                                     .authServices = {},
                                     .installable = true},
                       .connectionState = "connected",
                       .detail = "Signed in.",
                       .authStatus = PackagedConnectorAuthStatus{.credentialsPresent = true,
                                                                 .serviceAccountConfigured = false,
                                                                 .accounts = {}}},
            .required = "runtimeMode connector connectionState detail",
            .optional = "authStatus"};
}

using AllRecords = testing::Types<PackagedConnectorAccount, PackagedConnectorAuthStatus, PackagedConnectorStatus,
                                  PackagedConnectorCatalogReport, PackagedConnectorDetailReport>;
INSTANTIATE_TYPED_TEST_SUITE_P(PackagedConnectors, RecordTable, AllRecords, RecordNames);

using RecordsWithSpellings = testing::Types<PackagedConnectorAccount, PackagedConnectorAuthStatus>;
INSTANTIATE_TYPED_TEST_SUITE_P(PackagedConnectors, RecordSpellings, RecordsWithSpellings, RecordNames);

namespace {

PackagedConnectorAuthStatus authStatus(std::string_view text) {
    return fromJson<PackagedConnectorAuthStatus>(parseJson(text));
}

/// A whole detail report with this status of the sign-in.
JsonValue detailReport(std::string_view status) {
    return with(objectOf(parseJson(goldenDocument("PackagedConnectorDetailReport"))), "authStatus", parseJson(status));
}

constexpr std::string_view snakeCaseStatus = R"({
  "primary_account_id": "1", "primary_email": "e", "primary_display_name": "n", "auth_preferred": "p",
  "credentials_present": true, "credentials_path": "c", "service_account_configured": true, "keyring_backend": "b",
  "keyring_source": "s",
  "accounts": [{"id": "a", "display_name": "d", "author_urn": "u", "created_at": "t", "auth": "k"}]
})";
constexpr std::string_view camelCaseStatus = R"({
  "primaryAccountId": "1", "primaryEmail": "e", "primaryDisplayName": "n", "authPreferred": "p",
  "credentialsPresent": true, "credentialsPath": "c", "serviceAccountConfigured": true, "keyringBackend": "b",
  "keyringSource": "s",
  "accounts": [{"id": "a", "displayName": "d", "authorUrn": "u", "createdAt": "t", "authKind": "k", "services": [],
                "scopes": []}]
})";

TEST(PackagedConnectors, ADetailReportInSnakeCaseIsWrittenInCamelCase) {
    const auto report = fromJson<PackagedConnectorDetailReport>(detailReport(snakeCaseStatus));
    EXPECT_EQ(toJson(report), detailReport(camelCaseStatus));
}

TEST(PackagedConnectors, ThePrimaryEmailInCamelCaseWins) {
    EXPECT_EQ(authStatus(R"({"primary_email":"snake","primaryEmail":"camel"})").primaryEmail, "camel");
}

TEST(PackagedConnectors, AnAccountWithoutIdFailsTheWholeDetailReport) {
    EXPECT_EQ(failureOf<PackagedConnectorDetailReport>(detailReport(R"({"accounts":[{"id":"a"},{"email":"e"}]})")),
              missing("authStatus.accounts[1].id"));
}

TEST(PackagedConnectors, AnAccountsAuthIsItsAuthKind) {
    const auto account = fromJson<PackagedConnectorAccount>(parseJson(R"({"id":"a","auth":"oauth"})"));
    EXPECT_EQ(account.authKind, "oauth");
    const auto written = objectOf(toJson(account));
    EXPECT_EQ(written.at("authKind"), JsonValue{std::string("oauth")});
    EXPECT_FALSE(written.contains("auth"));
}

TEST(PackagedConnectors, AStatusOfTheSignInMayBeEmpty) {
    const auto status = authStatus("{}");
    EXPECT_EQ(status, PackagedConnectorAuthStatus{});
    EXPECT_FALSE(status.credentialsPresent);
    EXPECT_FALSE(status.serviceAccountConfigured);
    EXPECT_TRUE(status.accounts.empty());
}

} // namespace

} // namespace vesk::test
