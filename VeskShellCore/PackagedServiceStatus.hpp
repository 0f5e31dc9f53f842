#pragma once

#include "VeskShellCore/BootstrapState.hpp"
#include "VeskShellCore/PackagedAttention.hpp"
#include "VeskShellCore/PackagedDoctorReport.hpp"
#include "VeskSupport/Records.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// The background service of the packaged runtime. All words are the runtime's own and are passed on as text.

namespace vesk {

/// The release that a process was started from.
struct PackagedRuntimeReleaseIdentity {
    std::optional<std::string> appVersion{};
    std::optional<std::string> appBuildVersion{};
    std::optional<std::string> releaseChannel{};

    bool operator==(const PackagedRuntimeReleaseIdentity&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedRuntimeReleaseIdentity> =
    recordFields(optional("appVersion", &PackagedRuntimeReleaseIdentity::appVersion),
                 optional("appBuildVersion", &PackagedRuntimeReleaseIdentity::appBuildVersion),
                 optional("releaseChannel", &PackagedRuntimeReleaseIdentity::releaseChannel));

/// What the service last wrote about itself. `fresh` is false where that is too long ago.
struct PackagedDaemonRuntimeStatus {
    bool statePresent = false;
    bool fresh = false;
    bool running = false;
    bool processAlive = false;
    bool launcherParentMatches = false;
    bool identityCurrent = false;
    std::optional<std::int64_t> pid{};
    std::optional<PackagedRuntimeReleaseIdentity> identity{};

    bool operator==(const PackagedDaemonRuntimeStatus&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedDaemonRuntimeStatus> = recordFields(
    required("statePresent", &PackagedDaemonRuntimeStatus::statePresent),
    required("fresh", &PackagedDaemonRuntimeStatus::fresh), required("running", &PackagedDaemonRuntimeStatus::running),
    required("processAlive", &PackagedDaemonRuntimeStatus::processAlive),
    required("launcherParentMatches", &PackagedDaemonRuntimeStatus::launcherParentMatches),
    required("identityCurrent", &PackagedDaemonRuntimeStatus::identityCurrent),
    optional("pid", &PackagedDaemonRuntimeStatus::pid), optional("identity", &PackagedDaemonRuntimeStatus::identity));

/// The background service as the runtime and the system's service manager see it, with the runtime's diagnosis.
struct PackagedServiceStatus {
    std::string runtimeMode;
    bool ready = false;
    std::string label;
    std::string plistPath;
    std::string stdoutPath;
    std::string stderrPath;
    std::string domainTarget;
    std::string serviceTarget;
    bool installed = false;
    bool plistValid = false;
    std::optional<bool> launchSpecCurrent{};
    bool loaded = false;
    std::optional<bool> enabled{};
    bool running = false;
    std::optional<std::string> state{};
    std::optional<std::int64_t> pid{};
    std::optional<std::int64_t> lastExitCode{};
    std::optional<PackagedDaemonRuntimeStatus> daemonRuntime{};
    std::optional<bool> runtimeIdentityCurrent{};
    PackagedDoctorReport doctor;
    std::optional<PackagedAttentionStatus> attention{};
    std::vector<BootstrapNextAction> nextActions;
    std::vector<BootstrapIssue> issues;

    bool operator==(const PackagedServiceStatus&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedServiceStatus> = recordFields(
    required("runtimeMode", &PackagedServiceStatus::runtimeMode), required("ready", &PackagedServiceStatus::ready),
    required("label", &PackagedServiceStatus::label), required("plistPath", &PackagedServiceStatus::plistPath),
    required("stdoutPath", &PackagedServiceStatus::stdoutPath),
    required("stderrPath", &PackagedServiceStatus::stderrPath),
    required("domainTarget", &PackagedServiceStatus::domainTarget),
    required("serviceTarget", &PackagedServiceStatus::serviceTarget),
    required("installed", &PackagedServiceStatus::installed),
    required("plistValid", &PackagedServiceStatus::plistValid),
    optional("launchSpecCurrent", &PackagedServiceStatus::launchSpecCurrent),
    required("loaded", &PackagedServiceStatus::loaded), optional("enabled", &PackagedServiceStatus::enabled),
    required("running", &PackagedServiceStatus::running), optional("state", &PackagedServiceStatus::state),
    optional("pid", &PackagedServiceStatus::pid), optional("lastExitCode", &PackagedServiceStatus::lastExitCode),
    optional("daemonRuntime", &PackagedServiceStatus::daemonRuntime),
    optional("runtimeIdentityCurrent", &PackagedServiceStatus::runtimeIdentityCurrent),
    required("doctor", &PackagedServiceStatus::doctor), optional("attention", &PackagedServiceStatus::attention),
    required("nextActions", &PackagedServiceStatus::nextActions), required("issues", &PackagedServiceStatus::issues));

/// The service after it was installed, started, stopped or removed.
struct LaunchAgentOperationResult {
    std::string runtimeMode;
    std::string action;
    std::string label;
    std::string plistPath;
    PackagedServiceStatus status;

    bool operator==(const LaunchAgentOperationResult&) const = default;
};

template <>
inline constexpr auto recordTable<LaunchAgentOperationResult> =
    recordFields(required("runtimeMode", &LaunchAgentOperationResult::runtimeMode),
                 required("action", &LaunchAgentOperationResult::action),
                 required("label", &LaunchAgentOperationResult::label),
                 required("plistPath", &LaunchAgentOperationResult::plistPath),
                 required("status", &LaunchAgentOperationResult::status));

} // namespace vesk
