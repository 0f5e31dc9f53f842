#include "VeskShellCore/VeskShellClient.hpp"

#include "VeskShellCore/ShellClientRecords.hpp"
#include "VeskShellCore/ShellClientRun.hpp"
#include "VeskSupport/Text.hpp"

#include <utility>
#include <vector>

namespace vesk {
namespace {

using Arguments = std::vector<std::string>;
using Payload = std::optional<JsonValue>;

/// What an answer is asked with. Each call reads the surroundings and writes the payload at once, so that a task needs
/// nothing of its client.
template <Record Answer>
Task<Answer> ask(Platform& platform, const VeskRuntimeDescriptor& runtime, const std::string& script,
                 const std::string& tool, Arguments arguments, const Payload& payload) {
    arguments.insert(arguments.begin(), tool);
    return runJson<Answer>(platform, shellClientRun(platform, runtime, script, std::move(arguments), payload));
}

template <Record Answer>
Task<Answer> askBootstrap(Platform& platform, const VeskRuntimeDescriptor& runtime, Arguments arguments,
                          const Payload& payload = std::nullopt) {
    return ask<Answer>(platform, runtime, runtime.bootstrapCLIPath, "bootstrap", std::move(arguments), payload);
}

template <Record Answer>
Task<Answer> askSettings(Platform& platform, const VeskRuntimeDescriptor& runtime, Arguments arguments,
                         const Payload& payload = std::nullopt) {
    return ask<Answer>(platform, runtime, runtime.settingsCLIPath, "settings", std::move(arguments), payload);
}

/// One field of an answer.
template <Record Answer, class Part> Task<Part> partOf(Task<Answer> asked, Part Answer::*member) {
    Answer answer = co_await std::move(asked);
    co_return std::move(answer.*member);
}

template <Record Answer> Task<void> nothingOf(Task<Answer> asked) { co_await std::move(asked); }

Task<PackagedServiceStatus> statusAfter(Platform& platform, const VeskRuntimeDescriptor& runtime, Arguments arguments) {
    return partOf(askBootstrap<LaunchAgentOperationEnvelope>(platform, runtime, std::move(arguments)),
                  &LaunchAgentOperationEnvelope::status);
}

Task<PackagedConnectorDetailReport> detailAfter(Platform& platform, const VeskRuntimeDescriptor& runtime,
                                                Arguments arguments, const Payload& payload = std::nullopt) {
    return partOf(askBootstrap<ConnectorOperationEnvelope>(platform, runtime, std::move(arguments), payload),
                  &ConnectorOperationEnvelope::detail);
}

UpdateActivationOutcomePayload outcomeOf(const AppUpdateActivationRecord& record) {
    return {.updateID = record.updateID.lowercaseText(),
            .sourceVersion = record.sourceVersion,
            .sourceBuild = record.sourceBuild,
            .targetVersion = record.targetVersion,
            .targetBuild = record.targetBuild,
            .channel = record.channel,
            .assistantWasRunning = record.assistantWasRunning,
            .recoveryAttempts = record.recoveryAttempts};
}

JsonValue memoryPayload(const std::string& text) {
    return toJson(PackagedMemoryMutationPayload{.text = text, .conversationId = std::nullopt});
}

} // namespace

VeskShellClient::VeskShellClient(Platform& platform, VeskRuntimeDescriptor runtime)
    : platform_(&platform), runtime_(std::move(runtime)) {}

Task<PackagedServiceStatus> VeskShellClient::serviceStatus() const {
    return askBootstrap<PackagedServiceStatus>(*platform_, runtime_, {"status"});
}

Task<PackagedServiceStatus> VeskShellClient::startService() const {
    return statusAfter(*platform_, runtime_, {"start"});
}

Task<PackagedServiceStatus> VeskShellClient::stopService() const { return statusAfter(*platform_, runtime_, {"stop"}); }

Task<PackagedServiceStatus> VeskShellClient::restartService() const {
    return statusAfter(*platform_, runtime_, {"restart"});
}

Task<PackagedServiceStatus> VeskShellClient::activateService(bool shouldRun) const {
    return statusAfter(*platform_, runtime_, {"activate", shouldRun ? "--running" : "--stopped"});
}

Task<PackagedServiceStatus> VeskShellClient::installLaunchAgent() const {
    return statusAfter(*platform_, runtime_, {"install-launch-agent"});
}

Task<PackagedServiceStatus> VeskShellClient::uninstallLaunchAgent() const {
    return statusAfter(*platform_, runtime_, {"uninstall-launch-agent"});
}

Task<void> VeskShellClient::recordUpdateActivationOutcome(const AppUpdateActivationRecord& record) const {
    return nothingOf(askBootstrap<GenericOKResponse>(*platform_, runtime_, {"record-update-activation", "--stdin"},
                                                     toJson(outcomeOf(record))));
}

Task<BootstrapInitResponse> VeskShellClient::initialize(const BootstrapInitPayload& payload) const {
    return askBootstrap<BootstrapInitResponse>(*platform_, runtime_, {"init", "--stdin"}, toJson(payload));
}

Task<PackagedDoctorReport> VeskShellClient::doctor() const {
    return askBootstrap<PackagedDoctorReport>(*platform_, runtime_, {"doctor"});
}

Task<PackagedDoctorReport> VeskShellClient::completeOnboarding() const {
    return partOf(askBootstrap<CompleteOnboardingResponse>(*platform_, runtime_, {"complete-onboarding"}),
                  &CompleteOnboardingResponse::doctor);
}

Task<void> VeskShellClient::installCoreTools() const {
    return nothingOf(askBootstrap<GenericOKResponse>(*platform_, runtime_, {"install-core-tools"}));
}

Task<void> VeskShellClient::prepareRuntimeForLaunch() const {
    return nothingOf(askBootstrap<GenericOKResponse>(*platform_, runtime_, {"prepare-runtime"}));
}

Task<TelegramBotTokenValidationResult> VeskShellClient::validateTelegramBotToken(const std::string& token) const {
    return askBootstrap<TelegramBotTokenValidationResult>(*platform_, runtime_, {"telegram-token-validate", "--stdin"},
                                                          toJson(TelegramBotTokenValidationPayload{token}));
}

Task<PackagedTelegramBindingStatus> VeskShellClient::telegramBindingStatus() const {
    return askBootstrap<PackagedTelegramBindingStatus>(*platform_, runtime_, {"telegram-binding-status"});
}

Task<PackagedConnectorCatalogReport> VeskShellClient::connectors() const {
    return askBootstrap<PackagedConnectorCatalogReport>(*platform_, runtime_, {"connectors"});
}

Task<PackagedConnectorDetailReport> VeskShellClient::connectorDetail(const std::string& id) const {
    return askBootstrap<PackagedConnectorDetailReport>(*platform_, runtime_, {"connector-detail", id});
}

Task<PackagedConnectorDetailReport> VeskShellClient::installConnector(const std::string& id, bool force) const {
    Arguments arguments{"connector-install", id};
    if (force) arguments.emplace_back("--force");
    return detailAfter(*platform_, runtime_, std::move(arguments));
}

Task<PackagedConnectorDetailReport> VeskShellClient::connectConnector(const std::string& id,
                                                                      const std::string& email) const {
    return detailAfter(*platform_, runtime_, {"connector-connect", id, "--email", email});
}

Task<PackagedConnectorDetailReport> VeskShellClient::connectAPIKeyConnector(const std::string& id,
                                                                            const std::string& apiKey) const {
    ConnectorConnectPayload payload;
    payload.apiKey = apiKey;
    return detailAfter(*platform_, runtime_, {"connector-connect", id, "--stdin"}, toJson(payload));
}

Task<PackagedConnectorDetailReport>
VeskShellClient::disconnectConnector(const std::string& id, const std::optional<std::string>& email) const {
    Arguments arguments{"connector-disconnect", id};
    if (email && !isBlank(*email)) arguments.insert(arguments.end(), {"--email", *email});
    return detailAfter(*platform_, runtime_, std::move(arguments));
}

Task<PackagedMemoriesReport> VeskShellClient::memories() const {
    return askBootstrap<PackagedMemoriesReport>(*platform_, runtime_, {"memories"});
}

Task<PackagedMemoryMutationEnvelope> VeskShellClient::createMemory(const std::string& text) const {
    return askBootstrap<PackagedMemoryMutationEnvelope>(*platform_, runtime_, {"memory-create", "--stdin"},
                                                        memoryPayload(text));
}

Task<PackagedMemoryMutationEnvelope> VeskShellClient::updateMemory(std::int64_t memoryId,
                                                                   const std::string& text) const {
    return askBootstrap<PackagedMemoryMutationEnvelope>(
        *platform_, runtime_, {"memory-update", std::to_string(memoryId), "--stdin"}, memoryPayload(text));
}

Task<PackagedSettings> VeskShellClient::settings() const {
    return askSettings<PackagedSettings>(*platform_, runtime_, {"print"});
}

Task<void> VeskShellClient::mergeSettings(const PackagedSettings& settings) const {
    return nothingOf(
        askSettings<SettingsMutationResponse>(*platform_, runtime_, {"merge", "--stdin"}, toJson(settings)));
}

Task<void> VeskShellClient::setSecrets(const std::map<std::string, std::string>& secrets) const {
    return nothingOf(
        askSettings<SecretsMutationResponse>(*platform_, runtime_, {"set-secrets", "--stdin"}, toJson(secrets)));
}

Task<void> VeskShellClient::deleteSecret(const std::string& account) const {
    return nothingOf(askSettings<SecretDeletionResponse>(*platform_, runtime_, {"delete-secret", account}));
}

} // namespace vesk
