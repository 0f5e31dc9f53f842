#include "VeskShellCore/VeskShellClient.hpp"

#include "VeskShellCore/ShellClientRecords.hpp"
#include "VeskShellCore/VeskShellError.hpp"
#include "tests/VeskShellCore/GoldenRecords.hpp"
#include "tests/VeskShellCore/LoggedLines.hpp"
#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <functional>
#include <gtest/gtest.h>

namespace vesk {
namespace {

const VeskRuntimeDescriptor runtime{.source = VeskRuntimeDescriptor::Source::bundledResource,
                                    .manifestPath = "/r/manifest.json",
                                    .runtimeRoot = "/r",
                                    .daemonPath = "/r/bin/vesk-daemon",
                                    .agentPath = "/r/bin/vesk-agent",
                                    .bootstrapCLIPath = "/r/bin/bootstrap-tool",
                                    .settingsCLIPath = "/r/bin/settings-tool",
                                    .launcherPath = "/r/bin/vesk-launcher"};

PackagedDoctorReport sampleDoctor() {
    PackagedDoctorReport report;
    report.runtimeMode = "packaged";
    report.ready = true;
    report.settingsPath = "/s/settings.json";
    return report;
}

PackagedServiceStatus sampleStatus() {
    PackagedServiceStatus status;
    status.label = "app.veskhq.assistant";
    status.running = true;
    status.doctor = sampleDoctor();
    return status;
}

PackagedConnectorDetailReport sampleDetail() {
    PackagedConnectorDetailReport detail;
    detail.connector.id = "mail";
    detail.connectionState = "connected";
    return detail;
}

PackagedMemoryMutationEnvelope sampleMemory() {
    PackagedMemoryMutationEnvelope envelope;
    envelope.memory.text = "likes tea";
    return envelope;
}

AppUpdateActivationRecord sampleUpdate() {
    AppUpdateActivationRecord record;
    record.updateID = *Uuid::parse("0F8FAD5B-D9CB-469F-A165-70867728950E");
    record.sourceVersion = "1.4.1";
    record.sourceBuild = "203";
    record.targetVersion = "1.4.2";
    record.targetBuild = "204";
    record.channel = "beta";
    record.assistantWasRunning = true;
    record.recoveryAttempts = 2;
    return record;
}

JsonValue serviceAnswer() {
    return toJson(LaunchAgentOperationEnvelope{.ok = true,
                                               .runtimeMode = "packaged",
                                               .action = "a",
                                               .label = "l",
                                               .plistPath = "p",
                                               .status = sampleStatus()});
}
JsonValue connectorAnswer() {
    return toJson(ConnectorOperationEnvelope{.ok = true,
                                             .runtimeMode = "packaged",
                                             .action = "a",
                                             .connectorId = "mail",
                                             .detail = sampleDetail(),
                                             .authorizationUrl = "https://auth.example"});
}

/// What an operation returned, as JSON; an empty object for nothing.
using Returned = std::function<JsonValue(const VeskShellClient&)>;
template <class Answer> JsonValue returnedBy(Task<Answer> task) { return toJson(test::runTask(std::move(task))); }
JsonValue returnedBy(Task<void> task) {
    test::runTask(std::move(task));
    return {JsonValue::Object{}};
}

struct Operation {
    std::string name;
    Returned call;
    std::vector<std::string> arguments;
    /// None where standard input is inherited.
    std::optional<std::string> input;
    JsonValue answer;
    JsonValue returned;
    friend void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.name; }
};

const std::optional<std::string> inherited = std::nullopt;
const JsonValue nothing{JsonValue::Object{}}, ok = toJson(GenericOKResponse{.ok = true});

template <class... Arguments> Returned calling(auto operation, Arguments... arguments) {
    return [=](const VeskShellClient& client) { return returnedBy((client.*operation)(arguments...)); };
}

std::vector<Operation> operations() {
    using Client = VeskShellClient;
    const JsonValue status = toJson(sampleStatus()), doctor = toJson(sampleDoctor()), detail = toJson(sampleDetail()),
                    service = serviceAnswer(), connector = connectorAnswer(), memory = toJson(sampleMemory());
    const JsonValue catalog = toJson(PackagedConnectorCatalogReport{.runtimeMode = "packaged", .connectors = {}});
    const JsonValue report = toJson(PackagedMemoriesReport{.runtimeMode = "packaged", .memories = {}});
    const JsonValue token = toJson(TelegramBotTokenValidationResult{.ok = true});
    const JsonValue binding = toJson(PackagedTelegramBindingStatus{.runtimeMode = "packaged", .ownerBound = true});
    const JsonValue settings = toJson(PackagedSettings{.schemaVersion = 3});
    const JsonValue initialized = toJson(BootstrapInitResponse{
        .ok = true, .runtimeMode = "packaged", .appSupportDir = "/a", .settingsPath = "/s", .doctor = sampleDoctor()});
    const JsonValue onboarded = toJson(CompleteOnboardingResponse{.ok = true, .doctor = sampleDoctor()});
    const JsonValue merged = toJson(SettingsMutationResponse{.ok = true, .settingsPath = "/s"});
    const JsonValue wrote = toJson(SecretsMutationResponse{.ok = true, .wroteAccounts = {"a"}});
    const JsonValue deleted = toJson(SecretDeletionResponse{.ok = true, .account = "a"});
    const BootstrapInitPayload payload{
        .settings = PackagedSettings{.schemaVersion = 3}, .installCoreTools = true, .forceInstallCoreTools = {}};
    const std::map<std::string, std::string> secrets{{"b", "two"}, {"a", "one"}};
    return {
        {"Status", calling(&Client::serviceStatus), {"bootstrap", "status"}, inherited, status, status},
        {"Stop", calling(&Client::stopService), {"bootstrap", "stop"}, inherited, service, status},
        {"Start", calling(&Client::startService), {"bootstrap", "start"}, inherited, service, status},
        {"Restart", calling(&Client::restartService), {"bootstrap", "restart"}, inherited, service, status},
        {"ActivateRunning",
         calling(&Client::activateService, true),
         {"bootstrap", "activate", "--running"},
         inherited,
         service,
         status},
        {"ActivateStopped",
         calling(&Client::activateService, false),
         {"bootstrap", "activate", "--stopped"},
         inherited,
         service,
         status},
        {"InstallLaunchAgent",
         calling(&Client::installLaunchAgent),
         {"bootstrap", "install-launch-agent"},
         inherited,
         service,
         status},
        {"UninstallLaunchAgent",
         calling(&Client::uninstallLaunchAgent),
         {"bootstrap", "uninstall-launch-agent"},
         inherited,
         service,
         status},
        {"RecordUpdateActivation",
         calling(&Client::recordUpdateActivationOutcome, sampleUpdate()),
         {"bootstrap", "record-update-activation", "--stdin"},
         R"({
  "assistant_was_running" : true,
  "channel" : "beta",
  "recovery_attempts" : 2,
  "source_build" : "203",
  "source_version" : "1.4.1",
  "target_build" : "204",
  "target_version" : "1.4.2",
  "update_id" : "0f8fad5b-d9cb-469f-a165-70867728950e"
})",
         ok,
         nothing},
        {"Doctor", calling(&Client::doctor), {"bootstrap", "doctor"}, inherited, doctor, doctor},
        {"Connectors", calling(&Client::connectors), {"bootstrap", "connectors"}, inherited, catalog, catalog},
        {"ConnectorDetail",
         calling(&Client::connectorDetail, "mail"),
         {"bootstrap", "connector-detail", "mail"},
         inherited,
         detail,
         detail},
        {"ValidateTelegramBotToken",
         calling(&Client::validateTelegramBotToken, "12:ab"),
         {"bootstrap", "telegram-token-validate", "--stdin"},
         "{\n  \"bot_token\" : \"12:ab\"\n}",
         token,
         token},
        {"TelegramBindingStatus",
         calling(&Client::telegramBindingStatus),
         {"bootstrap", "telegram-binding-status"},
         inherited,
         binding,
         binding},
        {"Memories", calling(&Client::memories), {"bootstrap", "memories"}, inherited, report, report},
        {"CreateMemory",
         calling(&Client::createMemory, "likes tea"),
         {"bootstrap", "memory-create", "--stdin"},
         "{\n  \"text\" : \"likes tea\"\n}",
         memory,
         memory},
        {"UpdateMemory",
         calling(&Client::updateMemory, -1, "likes tea"),
         {"bootstrap", "memory-update", "-1", "--stdin"},
         "{\n  \"text\" : \"likes tea\"\n}",
         memory,
         memory},
        {"InstallConnector",
         calling(&Client::installConnector, "mail", false),
         {"bootstrap", "connector-install", "mail"},
         inherited,
         connector,
         detail},
        {"InstallConnectorByForce",
         calling(&Client::installConnector, "mail", true),
         {"bootstrap", "connector-install", "mail", "--force"},
         inherited,
         connector,
         detail},
        {"ConnectConnector",
         calling(&Client::connectConnector, "mail", " d@x.example"),
         {"bootstrap", "connector-connect", "mail", "--email", " d@x.example"},
         inherited,
         connector,
         detail},
        {"ConnectAPIKeyConnector",
         calling(&Client::connectAPIKeyConnector, "mail", "key"),
         {"bootstrap", "connector-connect", "mail", "--stdin"},
         "{\n  \"api_key\" : \"key\"\n}",
         connector,
         detail},
        {"DisconnectConnector",
         calling(&Client::disconnectConnector, "mail", std::optional<std::string>(" d@x ")),
         {"bootstrap", "connector-disconnect", "mail", "--email", " d@x "},
         inherited,
         connector,
         detail},
        {"DisconnectConnectorOfNobody",
         calling(&Client::disconnectConnector, "mail", std::optional<std::string>()),
         {"bootstrap", "connector-disconnect", "mail"},
         inherited,
         connector,
         detail},
        {"DisconnectConnectorOfBlanks",
         calling(&Client::disconnectConnector, "mail", std::optional<std::string>("  \n ")),
         {"bootstrap", "connector-disconnect", "mail"},
         inherited,
         connector,
         detail},
        {"Settings", calling(&Client::settings), {"settings", "print"}, inherited, settings, settings},
        {"Initialize",
         calling(&Client::initialize, payload),
         {"bootstrap", "init", "--stdin"},
         "{\n  \"install_core_tools\" : true,\n  \"settings\" : {\n    \"schema_version\" : 3\n  }\n}",
         initialized,
         initialized},
        {"MergeSettings",
         calling(&Client::mergeSettings, PackagedSettings{.schemaVersion = 3}),
         {"settings", "merge", "--stdin"},
         "{\n  \"schema_version\" : 3\n}",
         merged,
         nothing},
        {"SetSecrets",
         calling(&Client::setSecrets, secrets),
         {"settings", "set-secrets", "--stdin"},
         "{\n  \"a\" : \"one\",\n  \"b\" : \"two\"\n}",
         wrote,
         nothing},
        {"SetNoSecrets",
         calling(&Client::setSecrets, std::map<std::string, std::string>{}),
         {"settings", "set-secrets", "--stdin"},
         "{\n\n}",
         wrote,
         nothing},
        {"DeleteSecret",
         calling(&Client::deleteSecret, "openai"),
         {"settings", "delete-secret", "openai"},
         inherited,
         deleted,
         nothing},
        {"InstallCoreTools",
         calling(&Client::installCoreTools),
         {"bootstrap", "install-core-tools"},
         inherited,
         ok,
         nothing},
        {"PrepareRuntime",
         calling(&Client::prepareRuntimeForLaunch),
         {"bootstrap", "prepare-runtime"},
         inherited,
         ok,
         nothing},
        {"CompleteOnboarding",
         calling(&Client::completeOnboarding),
         {"bootstrap", "complete-onboarding"},
         inherited,
         onboarded,
         doctor},
    };
}

class ShellClientOperation : public testing::TestWithParam<Operation> {
protected:
    JsonValue call(const JsonValue& answer) {
        platform.fakeProgramLauncher.answers = {{.status = 0, .output = writeJson(answer), .errors = ""}};
        return GetParam().call(client);
    }
    const test::FakeProgramLauncher::Run& onlyRun() { return platform.fakeProgramLauncher.runs.at(0); }

    test::FakePlatform platform;
    const VeskShellClient client{platform, runtime};
};

TEST_P(ShellClientOperation, SendsItsArgumentsAndPayload) {
    EXPECT_EQ(call(GetParam().answer), GetParam().returned);
    ASSERT_EQ(platform.fakeProgramLauncher.runs.size(), 1u);
    const bool isSettings = GetParam().arguments.at(0) == "settings";
    EXPECT_EQ(onlyRun().launch.executable, isSettings ? runtime.settingsCLIPath : runtime.bootstrapCLIPath);
    EXPECT_EQ(onlyRun().launch.arguments, GetParam().arguments);
    EXPECT_EQ(onlyRun().launch.takesInput, GetParam().input.has_value());
    EXPECT_EQ(onlyRun().input, GetParam().input);
}

TEST_P(ShellClientOperation, IgnoresWhatItDoesNotKnow) {
    JsonValue answer = GetParam().answer;
    std::get<JsonValue::Object>(answer.value)["something_new"] = {std::string("x")};
    EXPECT_EQ(call(answer), GetParam().returned);
}

TEST_P(ShellClientOperation, AnAnswerThatIsNotOkIsAnAnswer) {
    JsonValue answer = GetParam().answer, expected = GetParam().returned;
    auto& object = std::get<JsonValue::Object>(answer.value);
    if (!object.contains("ok")) return;
    object["ok"] = {false};
    if (auto& returned = std::get<JsonValue::Object>(expected.value); returned.contains("ok")) returned["ok"] = {false};
    EXPECT_EQ(call(answer), expected);
}

TEST_P(ShellClientOperation, EachRequiredKeyOfTheAnswerIsNeeded) {
    const auto& answer = std::get<JsonValue::Object>(GetParam().answer.value);
    int needed = 0;
    for (const auto& [key, value] : answer) {
        JsonValue::Object less = answer;
        less.erase(key);
        try {
            call({less});
        } catch (const VeskShellError& error) {
            EXPECT_EQ(error.kind(), VeskShellError::Kind::invalidResponse) << key;
            ++needed;
        }
    }
    EXPECT_GT(needed, 0);
    EXPECT_THROW(call({JsonValue::Object{}}), VeskShellError);
}

TEST_P(ShellClientOperation, LogsItsArgumentsAndNeverItsPayload) {
    call(GetParam().answer);
    const std::string text = test::loggedLines(platform).at(0);
    for (const std::string secret : {"12:ab", "likes tea", "key\"", "one", "two"})
        EXPECT_EQ(text.find(secret), std::string::npos) << text;
    EXPECT_NE(text.find(GetParam().arguments.at(1)), std::string::npos) << text;
}

INSTANTIATE_TEST_SUITE_P(All, ShellClientOperation, testing::ValuesIn(operations()),
                         [](const auto& tested) { return tested.param.name; });

TEST(ShellClient, HasEachOfTheTwentyEightOperations) {
    std::set<std::vector<std::string>> words;
    std::set<std::string> inputs;
    for (const Operation& operation : operations())
        words.insert({operation.arguments[0], operation.arguments[1],
                      operation.arguments[1] == "connector-connect" ? operation.arguments.at(3) : ""});
    EXPECT_EQ(words.size(), 28u);
}

TEST(ShellClient, KnowsItsRuntime) {
    test::FakePlatform platform;
    EXPECT_EQ(VeskShellClient(platform, runtime).runtime(), runtime);
}

TEST(ShellClient, MayGoBeforeItsAnswerComes) {
    test::FakePlatform platform;
    platform.fakeProgramLauncher.answers = {{.status = 0, .output = writeJson(serviceAnswer()), .errors = ""}};
    std::optional<Task<PackagedServiceStatus>> task;
    {
        const VeskShellClient client(platform, runtime);
        task.emplace(client.stopService());
    }
    EXPECT_EQ(test::runTask(*std::move(task)), sampleStatus());
}

TEST(ShellClientRecords, Payloads) {
    test::expectGolden<BootstrapInitPayload>("{\n\n}");
    test::expectGolden<BootstrapInitPayload>(
        "{\n  \"force_install_core_tools\" : false,\n  \"install_core_tools\" : true,\n  \"settings\" : {\n    "
        "\"schema_version\" : 1\n  }\n}");
    test::expectGolden<ConnectorConnectPayload>("{\n  \"api_key\" : \"k\",\n  \"client_state\" : \"c\",\n  \"email\" : "
                                                "\"e\",\n  \"grant\" : \"g\"\n}");
    test::expectGolden<TelegramBotTokenValidationPayload>("{\n  \"bot_token\" : \"t\"\n}");
    test::expectGolden<PackagedMemoryMutationPayload>("{\n  \"conversation_id\" : \"c\",\n  \"text\" : \"t\"\n}");
}

TEST(ShellClientRecords, Answers) {
    test::expectGolden<GenericOKResponse>("{\n  \"ok\" : true\n}");
    test::expectGolden<SettingsMutationResponse>("{\n  \"ok\" : true,\n  \"settingsPath\" : \"\\/s\"\n}");
    test::expectGolden<SecretsMutationResponse>("{\n  \"ok\" : true,\n  \"wroteAccounts\" : [\n    \"a\"\n  ]\n}");
    test::expectGolden<SecretDeletionResponse>("{\n  \"account\" : \"a\",\n  \"ok\" : false\n}");
    test::expectRequired<LaunchAgentOperationEnvelope>(writeJson(serviceAnswer()),
                                                       {"ok", "runtimeMode", "action", "label", "plistPath", "status"});
    test::expectRequired<ConnectorOperationEnvelope>(writeJson(connectorAnswer()),
                                                     {"ok", "runtimeMode", "action", "connectorId", "detail"});
    test::expectRequired<CompleteOnboardingResponse>(
        writeJson(toJson(CompleteOnboardingResponse{.ok = true, .doctor = sampleDoctor()})), {"ok", "doctor"});
    test::expectRequired<BootstrapInitResponse>(
        writeJson(toJson(BootstrapInitResponse{
            .ok = true, .runtimeMode = "m", .appSupportDir = "/a", .settingsPath = "/s", .doctor = sampleDoctor()})),
        {"ok", "runtimeMode", "appSupportDir", "settingsPath", "doctor"});
}

} // namespace
} // namespace vesk
