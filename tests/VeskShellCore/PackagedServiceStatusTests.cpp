#include "VeskShellCore/PackagedServiceStatus.hpp"
#include "tests/VeskShellCore/RecordTableWalk.hpp"

namespace vesk::test {
namespace {

PackagedDoctorReport bareDoctorReport() {
    return {.runtimeMode = "packaged",
            .ready = true,
            .settingsPresent = false,
            .onboardingCompleted = true,
            .settingsPath = "/home/dana/.vesk/settings.json",
            .appSupportDir = "/home/dana/.vesk",
            .directories = {},
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
            .requiredPlatformTools = {},
            .onboarding = {.completed = true, .readyToComplete = false, .steps = {}, .nextActions = {}},
            .issues = {}};
}

PackagedServiceStatus bareServiceStatus() {
    return {.runtimeMode = "packaged",
            .ready = true,
            .label = "com.vesk.daemon",
            .plistPath = "/home/dana/agents/com.vesk.daemon.plist",
            .stdoutPath = "/home/dana/logs/out.log",
            .stderrPath = "/home/dana/logs/err.log",
            .domainTarget = "gui/501",
            .serviceTarget = "gui/501/com.vesk.daemon",
            .installed = false,
            .plistValid = true,
            .loaded = false,
            .running = true,
            .doctor = bareDoctorReport(),
            .nextActions = {},
            .issues = {}};
}

} // namespace

template <> RecordSample<PackagedRuntimeReleaseIdentity> sampleOf() {
    return {.name = "PackagedRuntimeReleaseIdentity",
            .record = {.appVersion = "1.4.0", .appBuildVersion = "87", .releaseChannel = "beta"},
            .optional = "appVersion appBuildVersion releaseChannel"};
}

template <> RecordSample<PackagedDaemonRuntimeStatus> sampleOf() {
    return {.name = "PackagedDaemonRuntimeStatus",
            .record = {.statePresent = true,
                       .fresh = false,
                       .running = true,
                       .processAlive = false,
                       .launcherParentMatches = true,
                       .identityCurrent = false,
                       .pid = 4322,
                       .identity = PackagedRuntimeReleaseIdentity{.appVersion = "1.4.0"}},
            .required = "statePresent fresh running processAlive launcherParentMatches identityCurrent",
            .optional = "pid identity",
            .booleans = {{"statePresent", &PackagedDaemonRuntimeStatus::statePresent},
                         {"fresh", &PackagedDaemonRuntimeStatus::fresh},
                         {"running", &PackagedDaemonRuntimeStatus::running},
                         {"processAlive", &PackagedDaemonRuntimeStatus::processAlive},
                         {"launcherParentMatches", &PackagedDaemonRuntimeStatus::launcherParentMatches},
                         {"identityCurrent", &PackagedDaemonRuntimeStatus::identityCurrent}}};
}

template <> RecordSample<PackagedServiceStatus> sampleOf() {
    return {.name = "PackagedServiceStatus",
            .record = {.runtimeMode = "packaged",
                       .ready = true,
                       .label = "com.vesk.daemon",
                       .plistPath = "/home/dana/agents/com.vesk.daemon.plist",
                       .stdoutPath = "/home/dana/logs/out.log",
                       .stderrPath = "/home/dana/logs/err.log",
                       .domainTarget = "gui/501",
                       .serviceTarget = "gui/501/com.vesk.daemon",
                       .installed = false,
                       .plistValid = true,
                       .launchSpecCurrent = false,
                       .loaded = true,
                       .enabled = false,
                       .running = true,
                       .state = "running",
                       .pid = 4321,
                       .lastExitCode = -9,
                       .daemonRuntime = PackagedDaemonRuntimeStatus{.statePresent = true,
                                                                    .fresh = false,
                                                                    .running = true,
                                                                    .processAlive = false,
                                                                    .launcherParentMatches = true,
                                                                    .identityCurrent = false},
                       .runtimeIdentityCurrent = false,
                       .doctor = bareDoctorReport(),
                       .attention = PackagedAttentionStatus{.activeCount = 3,
                                                            .highCount = 2,
                                                            .urgentCount = 1,
                                                            .byType = {},
                                                            .bySeverity = {},
                                                            .events = {}},
                       .nextActions = {{.code = "token_missing",
                                        .title = "Give a token",
                                        .detail = "The bot needs a token.",
                                        .command = "vesk settings",
                                        .blocking = true}},
                       .issues = {{.code = "token_missing", .message = "No token was given."}}},
            .required = "runtimeMode ready label plistPath stdoutPath stderrPath domainTarget serviceTarget installed "
                        "plistValid loaded running doctor nextActions issues",
            .optional =
                "launchSpecCurrent enabled state pid lastExitCode daemonRuntime runtimeIdentityCurrent attention",
            .booleans = {{"ready", &PackagedServiceStatus::ready},
                         {"installed", &PackagedServiceStatus::installed},
                         {"plistValid", &PackagedServiceStatus::plistValid},
                         {"launchSpecCurrent", &PackagedServiceStatus::launchSpecCurrent},
                         {"loaded", &PackagedServiceStatus::loaded},
                         {"enabled", &PackagedServiceStatus::enabled},
                         {"running", &PackagedServiceStatus::running},
                         {"runtimeIdentityCurrent", &PackagedServiceStatus::runtimeIdentityCurrent}}};
}

template <> RecordSample<LaunchAgentOperationResult> sampleOf() {
    return {.name = "LaunchAgentOperationResult",
            .record = {.runtimeMode = "packaged",
                       .action = "start",
                       .label = "com.vesk.daemon",
                       .plistPath = "/home/dana/agents/com.vesk.daemon.plist",
                       .status = bareServiceStatus()},
            .required = "runtimeMode action label plistPath status"};
}

using AllRecords = testing::Types<PackagedRuntimeReleaseIdentity, PackagedDaemonRuntimeStatus, PackagedServiceStatus,
                                  LaunchAgentOperationResult>;
INSTANTIATE_TYPED_TEST_SUITE_P(PackagedServiceStatus, RecordTable, AllRecords, RecordNames);

namespace {

JsonValue::Object serviceStatus() { return objectOf(parseJson(goldenDocument("PackagedServiceStatus"))); }

TEST(PackagedServiceStatus, DoesWithoutAttentionDaemonOrProcess) {
    auto document = serviceStatus();
    for (const char* key : {"attention", "daemonRuntime", "pid"}) document.erase(key);
    const auto status = fromJson<PackagedServiceStatus>({document});
    EXPECT_EQ(status.attention, std::nullopt);
    EXPECT_EQ(status.daemonRuntime, std::nullopt);
    EXPECT_EQ(status.pid, std::nullopt);
    EXPECT_EQ(status.state, "running");
    EXPECT_EQ(toJson(status), JsonValue{document});
}

TEST(PackagedServiceStatus, NeedsNextActionsIfOnlyAnEmptyList) {
    EXPECT_EQ(failureOf<PackagedServiceStatus>(without(serviceStatus(), "nextActions")), missing("nextActions"));
    const auto status = fromJson<PackagedServiceStatus>(with(serviceStatus(), "nextActions", {JsonValue::Array{}}));
    EXPECT_TRUE(status.nextActions.empty());
}

TEST(PackagedServiceStatus, NamesThePathInsideItsReport) {
    const auto doctor = objectOf(serviceStatus().at("doctor"));
    EXPECT_EQ(failureOf<PackagedServiceStatus>(with(serviceStatus(), "doctor", without(doctor, "ready"))),
              missing("doctor.ready"));
}

} // namespace

} // namespace vesk::test
