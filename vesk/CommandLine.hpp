#pragma once

#include "VeskShellCore/AuthSessionModels.hpp"
#include "VeskShellCore/CapabilityModels.hpp"
#include "VeskShellCore/ICloudModels.hpp"
#include "VeskSupport/Uuid.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace vesk {

/// A command line that means nothing: the usage that fits it, and what was wrong.
class UsageError : public std::runtime_error {
public:
    UsageError(std::string usage, const std::string& wrong) : std::runtime_error(wrong), usage_(std::move(usage)) {}
    const std::string& usage() const { return usage_; }

private:
    std::string usage_;
};

struct HelpCommand {
    std::string text;
};
struct VersionCommand {
    bool json = false;
};
enum class ConsentVerb { list, grant, deny, reset };
struct ConsentCommand {
    ConsentVerb verb{};
    std::vector<std::string> names;
    bool all = false, yes = false, json = false;
    /// The usage of the verb, for what only shows when the names are looked up.
    std::string usage;
};
struct ConsentPageCommand {
    std::string url;
    std::string usage;
};
struct DoctorCommand {
    bool json = false;
};
struct ComposeCommand {
    std::string requestPath;
    bool quiet = false;
};
enum class FilesVerb { root, list, stat, read, write, makeDirectory, exportItem, prepare };
struct FilesCommand {
    FilesVerb verb{};
    CapabilityICloudScope scope = CapabilityICloudScope::drive;
    /// None where `list` and `stat` mean the root.
    std::optional<std::string> path;
    std::string output;
    bool overwrite = false;
};
struct LivenessCommand {};
enum class UpdateRecordVerb { show, remove };
struct UpdateRecordCommand {
    UpdateRecordVerb verb{};
    /// None for the one of the application support directory.
    std::optional<std::string> file;
    std::optional<Uuid> expectedUpdateID;
};

enum class SignInVerb { start, redeem, status, cancel };
struct SignInCommand {
    SignInVerb verb{};
    std::string email;
    /// Redeem the grant that a failed try has left.
    bool pending = false;
    std::optional<std::string> baseURL;
};
enum class SignOutVerb { begin, advance, finish, show };
struct SignOutCommand {
    SignOutVerb verb{};
    /// How the assistant is when the sign-out begins.
    bool installed = false, running = false;
    VeskAuthSignOutPhase phase{};
};

/// The verbs of the packaged runtime's tools, by the runtime's own words; and `locate`, which is ours.
enum class RuntimeVerb {
    locate,
    status,
    start,
    stop,
    restart,
    activate,
    recordUpdateActivation,
    doctor,
    connectors,
    connectorDetail,
    connectorInstall,
    connectorConnect,
    connectorDisconnect,
    telegramTokenValidate,
    telegramBindingStatus,
    memories,
    memoryCreate,
    memoryUpdate,
    init,
    installCoreTools,
    prepareRuntime,
    completeOnboarding,
    installLaunchAgent,
    uninstallLaunchAgent,
    print,
    merge,
    setSecrets,
    deleteSecret
};

template <>
inline constexpr auto rawValueTable<RuntimeVerb> = std::to_array<std::pair<RuntimeVerb, std::string_view>>({
    {RuntimeVerb::locate, "locate"},
    {RuntimeVerb::status, "status"},
    {RuntimeVerb::start, "start"},
    {RuntimeVerb::stop, "stop"},
    {RuntimeVerb::restart, "restart"},
    {RuntimeVerb::activate, "activate"},
    {RuntimeVerb::recordUpdateActivation, "record-update-activation"},
    {RuntimeVerb::doctor, "doctor"},
    {RuntimeVerb::connectors, "connectors"},
    {RuntimeVerb::connectorDetail, "connector-detail"},
    {RuntimeVerb::connectorInstall, "connector-install"},
    {RuntimeVerb::connectorConnect, "connector-connect"},
    {RuntimeVerb::connectorDisconnect, "connector-disconnect"},
    {RuntimeVerb::telegramTokenValidate, "telegram-token-validate"},
    {RuntimeVerb::telegramBindingStatus, "telegram-binding-status"},
    {RuntimeVerb::memories, "memories"},
    {RuntimeVerb::memoryCreate, "memory-create"},
    {RuntimeVerb::memoryUpdate, "memory-update"},
    {RuntimeVerb::init, "init"},
    {RuntimeVerb::installCoreTools, "install-core-tools"},
    {RuntimeVerb::prepareRuntime, "prepare-runtime"},
    {RuntimeVerb::completeOnboarding, "complete-onboarding"},
    {RuntimeVerb::installLaunchAgent, "install-launch-agent"},
    {RuntimeVerb::uninstallLaunchAgent, "uninstall-launch-agent"},
    {RuntimeVerb::print, "print"},
    {RuntimeVerb::merge, "merge"},
    {RuntimeVerb::setSecrets, "set-secrets"},
    {RuntimeVerb::deleteSecret, "delete-secret"},
});

struct RuntimeCommand {
    RuntimeVerb verb{};
    /// A connector's identifier, or a secret's account.
    std::string subject;
    std::int64_t memoryId = 0;
    std::optional<std::string> email;
    bool running = false, force = false, standardInput = false;
};
/// Without a capability: the status of all.
struct BrokerCommand {
    std::optional<CapabilityKind> requested;
};

enum class ChannelVerb { check, urls };
struct ChannelCommand {
    ChannelVerb verb{};
    std::string channel;
    std::string manifestFile;
    std::optional<std::string> version;
};
struct TelegramBootstrapCommand {};
enum class UpdateVerb { prepare, handoff, recover, reconcile, show };
struct UpdateCommand {
    UpdateVerb verb{};
    std::string version, build, channel;
    std::optional<bool> desiredRunning;
    std::optional<Uuid> updateID;
    /// None for the one of the application support directory.
    std::optional<std::string> file;
    int stopPolls = 40, activationPolls = 60, pollIntervalMs = 500;
    std::vector<int> retryDelaysMs{0, 2000, 5000};
};

enum class SecretsVerb { set, read, remove, presence, exportAll, rehearse };
struct SecretsCommand {
    SecretsVerb verb{};
    std::string service;
    std::string account;
    std::string file;
};

using Command =
    std::variant<HelpCommand, VersionCommand, ConsentCommand, ConsentPageCommand, DoctorCommand, ComposeCommand,
                 FilesCommand, RuntimeCommand, BrokerCommand, LivenessCommand, UpdateRecordCommand, ChannelCommand,
                 TelegramBootstrapCommand, SecretsCommand, SignInCommand, SignOutCommand, UpdateCommand>;

/// The command of `arguments` (without the program's name). Throws UsageError.
Command parseCommandLine(std::vector<std::string> arguments);

} // namespace vesk
