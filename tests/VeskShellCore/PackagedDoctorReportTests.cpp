#include "VeskShellCore/PackagedDoctorReport.hpp"
#include "tests/VeskShellCore/RecordTableWalk.hpp"

namespace vesk::test {

template <> RecordSample<PackagedDoctorReport> sampleOf() {
    return {.name = "PackagedDoctorReport",
            .record = {.runtimeMode = "packaged",
                       .ready = true,
                       .settingsPresent = false,
                       .onboardingCompleted = true,
                       .settingsPath = "/home/dana/.vesk/settings.json",
                       .appSupportDir = "/home/dana/.vesk",
                       .directories = {{"data", {.path = "/home/dana/.vesk/data", .exists = true}}},
                       .telegram = {.botTokenPresent = true,
                                    .allowlistConfigured = false,
                                    .bootstrapUsernameConfigured = true,
                                    .ownerConfigured = false,
                                    .ownerBound = true,
                                    .groupChatsConfigured = false,
                                    .allowedChatIDs = {},
                                    .pendingChatIDs = {},
                                    .discoveredChatCount = 11,
                                    .authorizedChatCount = 5,
                                    .pendingChatCount = 6,
                                    .reachableChatCount = 7,
                                    .unreachableChatCount = 8},
                       .provider = {.apiKeyPresent = true},
                       .auth = {.tokenPresent = true},
                       .native = {.bridgeDirectory = "/run/bridge",
                                  .bridgeStatePresent = true,
                                  .bridgeRunning = false,
                                  .bridgeStateFresh = true,
                                  .requiredCapabilities = {},
                                  .ready = false,
                                  .missingCapabilities = {},
                                  .capabilities = {}},
                       .requiredPlatformTools = {{.name = "browser-driver",
                                                  .version = "1.2",
                                                  .required = true,
                                                  .installed = false,
                                                  .browserRequired = true}},
                       .onboarding = {.completed = true, .readyToComplete = false, .steps = {}, .nextActions = {}},
                       .issues = {{.code = "token_missing", .message = "No token was given."}}},
            .required = "runtimeMode ready onboardingCompleted settingsPath appSupportDir",
            .defaulted = "settingsPresent directories telegram provider auth native requiredPlatformTools issues",
            .derived = "onboarding",
            .booleans = {{"ready", &PackagedDoctorReport::ready},
                         {"settingsPresent", &PackagedDoctorReport::settingsPresent},
                         {"onboardingCompleted", &PackagedDoctorReport::onboardingCompleted}}};
}

template <> RecordSample<PackagedDoctorReport::TelegramStatus> sampleOf() {
    using TelegramStatus = PackagedDoctorReport::TelegramStatus;
    return {.name = "PackagedDoctorReport.TelegramStatus",
            .record = {.botTokenPresent = true,
                       .botTokenSource = "secrets",
                       .allowlistConfigured = false,
                       .allowlistSource = "file",
                       .bootstrapUsernameConfigured = true,
                       .ownerConfigured = false,
                       .ownerBound = true,
                       .groupChatsConfigured = false,
                       .allowedUsername = "dana_w",
                       .allowedUserID = "4711",
                       .allowedChatIDs = {"-100", "-200"},
                       .pendingChatIDs = {"-300"},
                       .discoveredChatCount = 11,
                       .authorizedChatCount = 5,
                       .pendingChatCount = 6,
                       .botUsername = "vesk_bot",
                       .canReadAllGroupMessages = true,
                       .liveReachabilityStatus = "partial",
                       .reachableChatCount = 7,
                       .unreachableChatCount = 8,
                       .liveReachabilityError = "timeout"},
            .optional = "botTokenSource allowlistSource allowedUsername allowedUserId botUsername "
                        "canReadAllGroupMessages liveReachabilityStatus liveReachabilityError",
            .defaulted = "botTokenPresent allowlistConfigured bootstrapUsernameConfigured ownerConfigured ownerBound "
                         "groupChatsConfigured allowedChatIds pendingChatIds discoveredChatCount reachableChatCount "
                         "unreachableChatCount",
            .derived = "authorizedChatCount pendingChatCount",
            .booleans = {{"botTokenPresent", &TelegramStatus::botTokenPresent},
                         {"allowlistConfigured", &TelegramStatus::allowlistConfigured},
                         {"bootstrapUsernameConfigured", &TelegramStatus::bootstrapUsernameConfigured},
                         {"ownerConfigured", &TelegramStatus::ownerConfigured},
                         {"ownerBound", &TelegramStatus::ownerBound},
                         {"groupChatsConfigured", &TelegramStatus::groupChatsConfigured},
                         {"canReadAllGroupMessages", &TelegramStatus::canReadAllGroupMessages}}};
}

template <> RecordSample<PackagedDoctorReport::ProviderStatus> sampleOf() {
    return {.name = "PackagedDoctorReport.ProviderStatus",
            .record = {.lockedProvider = "main",
                       .providerSource = "settings",
                       .apiKeyEnvKey = "API_KEY",
                       .apiKeyPresent = true,
                       .apiKeySource = "keyring"},
            .required = "apiKeyPresent",
            .optional = "lockedProvider providerSource apiKeyEnvKey apiKeySource"};
}

template <> RecordSample<PackagedDoctorReport::AuthStatus> sampleOf() {
    return {.name = "PackagedDoctorReport.AuthStatus",
            .record = {.tokenPresent = true,
                       .tokenSource = "keychain",
                       .accountEmail = "dana@example.com",
                       .baseURL = "https://example.com/api"},
            .required = "tokenPresent",
            .optional = "tokenSource accountEmail baseUrl"};
}

template <> RecordSample<PackagedDoctorReport::NativeStatus> sampleOf() {
    using NativeStatus = PackagedDoctorReport::NativeStatus;
    return {.name = "PackagedDoctorReport.NativeStatus",
            .record = {.bridgeDirectory = "/run/bridge",
                       .bridgeStatePresent = true,
                       .bridgeRunning = false,
                       .bridgeStateFresh = true,
                       .appBundlePath = "/opt/Vesk",
                       .executablePath = "/opt/Vesk/bin/vesk",
                       .capabilityReportUpdatedAtMs = 1777000000006,
                       .requiredCapabilities = {CapabilityKind::contacts, CapabilityKind::iCloud},
                       .ready = false,
                       .missingCapabilities = {CapabilityKind::iCloud},
                       .capabilities = {{.kind = CapabilityKind::contacts,
                                         .state = CapabilityAuthorizationState::notDetermined,
                                         .detail = "Not asked yet.",
                                         .remediation = {},
                                         .sharedAuthorizationWith = {}}}},
            .required = "bridgeDirectory bridgeStatePresent bridgeRunning bridgeStateFresh requiredCapabilities ready "
                        "missingCapabilities capabilities",
            .optional = "appBundlePath executablePath capabilityReportUpdatedAtMs",
            .booleans = {{"bridgeStatePresent", &NativeStatus::bridgeStatePresent},
                         {"bridgeRunning", &NativeStatus::bridgeRunning},
                         {"bridgeStateFresh", &NativeStatus::bridgeStateFresh},
                         {"ready", &NativeStatus::ready}}};
}

template <> RecordSample<PackagedDoctorReport::OnboardingStatus> sampleOf() {
    using OnboardingStatus = PackagedDoctorReport::OnboardingStatus;
    return {.name = "PackagedDoctorReport.OnboardingStatus",
            .record = {.completed = true,
                       .readyToComplete = false,
                       .steps = {{.id = "telegram", .title = "Telegram", .ready = true, .issueCodes = {}}},
                       .nextActions = {{.code = "token_missing",
                                        .title = "Give a token",
                                        .detail = "The bot needs a token.",
                                        .command = "vesk settings",
                                        .blocking = true}}},
            .required = "completed readyToComplete steps nextActions",
            .booleans = {{"completed", &OnboardingStatus::completed},
                         {"readyToComplete", &OnboardingStatus::readyToComplete}}};
}

using AllRecords = testing::Types<PackagedDoctorReport, PackagedDoctorReport::TelegramStatus,
                                  PackagedDoctorReport::ProviderStatus, PackagedDoctorReport::AuthStatus,
                                  PackagedDoctorReport::NativeStatus, PackagedDoctorReport::OnboardingStatus>;
INSTANTIATE_TYPED_TEST_SUITE_P(PackagedDoctorReport, RecordTable, AllRecords, RecordNames);

namespace {

/// The five keys that a report needs, with more beside them.
PackagedDoctorReport doctorReport(const std::string& more = "") {
    return fromJson<PackagedDoctorReport>(
        parseJson(R"({"runtimeMode":"m","ready":true,"onboardingCompleted":true,"settingsPath":"s","appSupportDir":"a")"
                  + more + "}"));
}

TEST(PackagedDoctorReport, StandsInForAllThatIsMissing) {
    const PackagedDoctorReport report = doctorReport();
    EXPECT_FALSE(report.settingsPresent);
    EXPECT_TRUE(report.onboarding.completed);
    EXPECT_EQ(writeJson(toJson(report)), goldenDocument("PackagedDoctorReport.bare"));
    EXPECT_EQ(fromJson<PackagedDoctorReport>(toJson(report)), report);
}

TEST(PackagedDoctorReport, TakesTheOnboardingFromItsOwnField) {
    for (const bool completed : {false, true}) {
        auto document = objectOf(toJson(doctorReport()));
        document.erase("onboarding");
        document["onboardingCompleted"] = {completed};
        EXPECT_EQ(fromJson<PackagedDoctorReport>({document}).onboarding,
                  PackagedDoctorReport::OnboardingStatus{.completed = completed});
    }
}

TEST(PackagedDoctorReport, FailsWithoutOnboardingCompleted) {
    const auto document = objectOf(toJson(doctorReport()));
    EXPECT_EQ(failureOf<PackagedDoctorReport>(without(document, "onboardingCompleted")),
              missing("onboardingCompleted"));
}

TEST(PackagedDoctorReport, NeedsAllKeysOfAnOnboardingThatIsThere) {
    const auto onboarding =
        objectOf(parseJson(R"({"completed":false,"readyToComplete":true,"steps":[],"nextActions":[]})"));
    const auto document = objectOf(toJson(doctorReport()));
    EXPECT_EQ(fromJson<PackagedDoctorReport>(with(document, "onboarding", {onboarding})).onboarding,
              (PackagedDoctorReport::OnboardingStatus{.completed = false, .readyToComplete = true}));
    for (const auto& [key, value] : onboarding)
        EXPECT_EQ(failureOf<PackagedDoctorReport>(with(document, "onboarding", without(onboarding, key))),
                  missing("onboarding." + key));
}

TEST(PackagedDoctorReport, NamesThePathInsideAPartOfIt) {
    const auto document = objectOf(toJson(doctorReport()));
    const auto failure = [&](const std::string& key, std::string_view part) {
        return failureOf<PackagedDoctorReport>(with(document, key, parseJson(part)));
    };
    EXPECT_EQ(failure("provider", "{}"), missing("provider.apiKeyPresent"));
    EXPECT_EQ(failure("auth", "{}"), missing("auth.tokenPresent"));
    EXPECT_EQ(failure("native", "{}"), missing("native.bridgeDirectory"));
    EXPECT_EQ(failure("directories", R"({"data":{"path":"p"}})"), missing("directories.data.exists"));
    EXPECT_EQ(failure("telegram", R"({"allowedChatIds":["1",2]})"),
              mistyped("telegram.allowedChatIds[1]") + "a string.");
    EXPECT_EQ(failure("issues", R"([{"code":"c","message":"m"},{"code":"c"}])"), missing("issues[1].message"));
}

PackagedDoctorReport::TelegramStatus telegramStatus(std::string_view text) {
    return fromJson<PackagedDoctorReport::TelegramStatus>(parseJson(text));
}

TEST(PackagedDoctorReport, ATelegramStatusMayBeEmpty) {
    const auto status = telegramStatus("{}");
    EXPECT_EQ(status, PackagedDoctorReport::TelegramStatus{});
    EXPECT_EQ(status.authorizedChatCount, 0);
    EXPECT_EQ(status.pendingChatCount, 0);
}

TEST(PackagedDoctorReport, AMissingCountOfChatsIsTheLengthOfItsList) {
    const auto counted = telegramStatus(R"({"allowedChatIds":["1","2"],"pendingChatIds":["3","4","5"]})");
    EXPECT_EQ(counted.authorizedChatCount, 2);
    EXPECT_EQ(counted.pendingChatCount, 3);
    EXPECT_EQ(counted.discoveredChatCount, 0);
    const auto given = telegramStatus(
        R"({"allowedChatIds":["1","2"],"authorizedChatCount":5,"pendingChatIds":["3"],"pendingChatCount":0})");
    EXPECT_EQ(given.authorizedChatCount, 5);
    EXPECT_EQ(given.pendingChatCount, 0);
}

} // namespace

} // namespace vesk::test
