#include "VeskShellCore/AppUpdateActivationChecks.hpp"

#include <algorithm>

namespace vesk::AppUpdateActivationChecks {
namespace {

bool daemonIsAlive(const PackagedServiceStatus& status) {
    return status.daemonRuntime && status.daemonRuntime->processAlive;
}

bool isDown(const PackagedServiceStatus& status) { return !status.running && !daemonIsAlive(status); }

bool isInstalledRightly(const PackagedServiceStatus& status) {
    return status.installed && status.plistValid && status.launchSpecCurrent == true;
}

bool isUp(const PackagedServiceStatus& status) {
    return status.enabled != false && status.loaded && status.running && status.runtimeIdentityCurrent == true;
}

bool isOfRelease(const PackagedRuntimeReleaseIdentity& identity, const AppUpdateReleaseIdentity& expected) {
    return identity.appVersion == expected.version && identity.appBuildVersion == expected.build
           && identity.releaseChannel == expected.channel;
}

/// A daemon that never restarted still runs the old files.
bool daemonIsNewAndOfRelease(const PackagedServiceStatus& status, const AppUpdateActivationRecord& record,
                             const AppUpdateReleaseIdentity& expected) {
    const auto& daemon = status.daemonRuntime;
    if (!daemon || !daemon->pid || !daemon->identity) return false;
    if (record.assistantPIDBeforeUpdate && daemon->pid == record.assistantPIDBeforeUpdate) return false;
    return isOfRelease(*daemon->identity, expected);
}

bool isReady(const BootstrapRequiredPlatformToolState& tool) {
    return tool.installed && (!tool.browserRequired || tool.browserReady == true);
}

} // namespace

bool needsStop(const PackagedServiceStatus& status) { return status.loaded || status.running || daemonIsAlive(status); }

std::optional<std::int64_t> processOf(const PackagedServiceStatus& status) {
    if (status.daemonRuntime && status.daemonRuntime->pid) return status.daemonRuntime->pid;
    return status.pid;
}

bool isStopped(const PackagedServiceStatus& status, std::optional<std::int64_t> previousPID,
               const std::function<bool(std::int64_t)>& processIsAlive) {
    if (previousPID && processIsAlive(*previousPID)) return false;
    if (status.loaded || status.running) return false;
    // A daemon of another process is not the one that was stopped.
    const auto& daemon = status.daemonRuntime;
    const bool isSameProcess = daemon && daemon->pid == previousPID;
    return !isSameProcess || !daemon->processAlive;
}

bool activationComplete(const AppUpdateActivationRecord& record, const PackagedServiceStatus& status,
                        const AppUpdateReleaseIdentity& current, const AppUpdateReleaseIdentity& expected) {
    if (current != expected) return false;
    if (!record.assistantWasInstalled) return !status.installed;
    if (!isInstalledRightly(status)) return false;
    if (!record.assistantWasRunning) return isDown(status);
    return isUp(status) && daemonIsNewAndOfRelease(status, record, expected);
}

bool isCurrent(const PackagedServiceStatus& status) {
    if (!status.plistValid || status.launchSpecCurrent == false) return false;
    if (!std::ranges::all_of(status.doctor.requiredPlatformTools, isReady)) return false;
    return !status.running || status.runtimeIdentityCurrent != false;
}

bool isRepaired(const PackagedServiceStatus& status, bool shouldRun, std::optional<std::int64_t> previousPID) {
    if (!isInstalledRightly(status)) return false;
    if (!shouldRun) return isDown(status);
    if (!isUp(status)) return false;
    const auto& daemon = status.daemonRuntime;
    if (daemon && daemon->pid) return daemon->pid != previousPID;
    return previousPID.has_value();
}

} // namespace vesk::AppUpdateActivationChecks
