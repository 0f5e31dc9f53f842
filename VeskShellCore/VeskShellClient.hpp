#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/AppUpdateActivationRecord.hpp"
#include "VeskShellCore/PackagedBootstrap.hpp"
#include "VeskShellCore/PackagedConnectors.hpp"
#include "VeskShellCore/PackagedDoctorReport.hpp"
#include "VeskShellCore/PackagedMemories.hpp"
#include "VeskShellCore/PackagedServiceStatus.hpp"
#include "VeskShellCore/PackagedSettings.hpp"
#include "VeskShellCore/PackagedTelegram.hpp"
#include "VeskShellCore/VeskRuntimeDescriptor.hpp"
#include "VeskSupport/Task.hpp"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace vesk {

/// Talks to the packaged runtime: each operation is one run of its command-line tool, with a JSON document out and
/// sometimes one in. Runs do not wait for each other; who must not overlap is for the caller to say. A secret goes to
/// the tool's standard input, since arguments are logged. The platform outlives whatever is asked, the client need not.
///
/// All operations throw what `runCommand` throws (CommandExecution.hpp). An answer whose `ok` is false is an answer.
class VeskShellClient {
public:
    VeskShellClient(Platform& platform, VeskRuntimeDescriptor runtime);

    const VeskRuntimeDescriptor& runtime() const { return runtime_; }

    // The service
    Task<PackagedServiceStatus> serviceStatus() const;
    Task<PackagedServiceStatus> startService() const;
    Task<PackagedServiceStatus> stopService() const;
    Task<PackagedServiceStatus> restartService() const;
    Task<PackagedServiceStatus> activateService(bool shouldRun) const;
    Task<PackagedServiceStatus> installLaunchAgent() const;
    Task<PackagedServiceStatus> uninstallLaunchAgent() const;
    Task<void> recordUpdateActivationOutcome(const AppUpdateActivationRecord& record) const;

    // Setting up
    Task<BootstrapInitResponse> initialize(const BootstrapInitPayload& payload) const;
    Task<PackagedDoctorReport> doctor() const;
    Task<PackagedDoctorReport> completeOnboarding() const;
    Task<void> installCoreTools() const;
    Task<void> prepareRuntimeForLaunch() const;
    Task<TelegramBotTokenValidationResult> validateTelegramBotToken(const std::string& token) const;
    Task<PackagedTelegramBindingStatus> telegramBindingStatus() const;

    // Connectors
    Task<PackagedConnectorCatalogReport> connectors() const;
    Task<PackagedConnectorDetailReport> connectorDetail(const std::string& id) const;
    Task<PackagedConnectorDetailReport> installConnector(const std::string& id, bool force) const;
    Task<PackagedConnectorDetailReport> connectConnector(const std::string& id, const std::string& email) const;
    Task<PackagedConnectorDetailReport> connectAPIKeyConnector(const std::string& id, const std::string& apiKey) const;
    /// A blank address counts as none; another goes out as it is, blanks and all.
    Task<PackagedConnectorDetailReport> disconnectConnector(const std::string& id,
                                                            const std::optional<std::string>& email) const;

    // Memories
    Task<PackagedMemoriesReport> memories() const;
    Task<PackagedMemoryMutationEnvelope> createMemory(const std::string& text) const;
    Task<PackagedMemoryMutationEnvelope> updateMemory(std::int64_t memoryId, const std::string& text) const;

    // Settings and secrets
    Task<PackagedSettings> settings() const;
    Task<void> mergeSettings(const PackagedSettings& settings) const;
    /// Values by the names of their accounts.
    Task<void> setSecrets(const std::map<std::string, std::string>& secrets) const;
    Task<void> deleteSecret(const std::string& account) const;

private:
    Platform* platform_;
    VeskRuntimeDescriptor runtime_;
};

} // namespace vesk
