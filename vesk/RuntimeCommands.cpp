#include "vesk/RuntimeCommands.hpp"

#include "VeskPlatform/FileManager.hpp"
#include "VeskShellCore/AppUpdateActivationRecordStore.hpp"
#include "VeskShellCore/VeskCapabilityBrokerClient.hpp"
#include "VeskShellCore/VeskRuntimeLocator.hpp"
#include "VeskShellCore/VeskShellClient.hpp"
#include "VeskSupport/RunToTheEnd.hpp"
#include "vesk/StandardInput.hpp"

#include <map>

namespace vesk {

/// A located runtime, as it is printed.
struct LocatedRuntime {
    VeskRuntimeDescriptor::Source source{};
    std::string sourceLabel;
    std::string manifestPath;
    std::string runtimeRoot;
    std::string daemonPath;
    std::string agentPath;
    std::string launcherPath;
};

template <>
inline constexpr auto recordTable<LocatedRuntime> =
    recordFields(required("source", &LocatedRuntime::source), required("sourceLabel", &LocatedRuntime::sourceLabel),
                 required("manifestPath", &LocatedRuntime::manifestPath),
                 required("runtimeRoot", &LocatedRuntime::runtimeRoot),
                 required("daemonPath", &LocatedRuntime::daemonPath), required("agentPath", &LocatedRuntime::agentPath),
                 required("launcherPath", &LocatedRuntime::launcherPath));

namespace {

constexpr std::uint64_t mostInputBytes = std::uint64_t{64} << 20;

JsonValue described(const VeskRuntimeDescriptor& runtime) {
    return toJson(LocatedRuntime{.source = runtime.source,
                                 .sourceLabel = std::string(runtime.sourceLabel()),
                                 .manifestPath = runtime.manifestPath,
                                 .runtimeRoot = runtime.runtimeRoot,
                                 .daemonPath = runtime.daemonPath,
                                 .agentPath = runtime.agentPath,
                                 .launcherPath = runtime.launcherPath});
}

JsonValue documentFromInput() { return parseJson(readStandardInput(mostInputBytes)); }

std::map<std::string, std::string> secretsFromInput() {
    std::map<std::string, std::string> secrets;
    JsonValue document = documentFromInput();
    records::read(document, records::Path(), secrets);
    return secrets;
}

template <class Answer> JsonValue printed(Task<Answer> task) { return toJson(answerOf(std::move(task))); }

JsonValue nothing(Task<void> task) {
    runToTheEnd(std::move(task));
    return {JsonValue::Object{}};
}

JsonValue connect(const VeskShellClient& client, const RuntimeCommand& command) {
    if (command.email) return printed(client.connectConnector(command.subject, *command.email));
    return printed(client.connectAPIKeyConnector(command.subject, readTextFromStandardInput(mostInputBytes)));
}

JsonValue answer(const VeskShellClient& client, const RuntimeCommand& command) {
    using enum RuntimeVerb;
    const auto text = [] { return readTextFromStandardInput(mostInputBytes); };
    switch (command.verb) {
    case locate: return described(client.runtime());
    case status: return printed(client.serviceStatus());
    case start: return printed(client.startService());
    case stop: return printed(client.stopService());
    case restart: return printed(client.restartService());
    case activate: return printed(client.activateService(command.running));
    case recordUpdateActivation:
        return nothing(client.recordUpdateActivationOutcome(readActivationRecord(readStandardInput(mostInputBytes))));
    case doctor: return printed(client.doctor());
    case connectors: return printed(client.connectors());
    case connectorDetail: return printed(client.connectorDetail(command.subject));
    case connectorInstall: return printed(client.installConnector(command.subject, command.force));
    case connectorConnect: return connect(client, command);
    case connectorDisconnect: return printed(client.disconnectConnector(command.subject, command.email));
    case telegramTokenValidate: return printed(client.validateTelegramBotToken(text()));
    case telegramBindingStatus: return printed(client.telegramBindingStatus());
    case memories: return printed(client.memories());
    case memoryCreate: return printed(client.createMemory(text()));
    case memoryUpdate: return printed(client.updateMemory(command.memoryId, text()));
    case init: return printed(client.initialize(fromJson<BootstrapInitPayload>(documentFromInput())));
    case installCoreTools: return nothing(client.installCoreTools());
    case prepareRuntime: return nothing(client.prepareRuntimeForLaunch());
    case completeOnboarding: return printed(client.completeOnboarding());
    case installLaunchAgent: return printed(client.installLaunchAgent());
    case uninstallLaunchAgent: return printed(client.uninstallLaunchAgent());
    case print: return printed(client.settings());
    case merge: return nothing(client.mergeSettings(fromJson<PackagedSettings>(documentFromInput())));
    case setSecrets: return nothing(client.setSecrets(secretsFromInput()));
    case deleteSecret: return nothing(client.deleteSecret(command.subject));
    }
    return {};
}

/// Where the search for builds begins: of a working directory that is gone only the root is left.
std::string searchedDirectory(FileManager& files) {
    try {
        return files.currentDirectoryPath();
    } catch (const ErrorRecord&) {
        return "/";
    }
}

} // namespace

VeskRuntimeDescriptor locatedRuntime(Platform& platform) {
    return VeskRuntimeLocator::resolve(platform, searchedDirectory(platform.fileManager()));
}

std::string runRuntime(const RuntimeCommand& command, Platform& platform) {
    const VeskShellClient client(platform, locatedRuntime(platform));
    return writeJson(answer(client, command)) + "\n";
}

std::string runBroker(const BrokerCommand& command, Platform& platform) {
    const VeskCapabilityBrokerClient client(platform);
    const JsonValue answer = command.requested ? printed(client.request(*command.requested)) : printed(client.status());
    return writeJson(answer) + "\n";
}

} // namespace vesk
