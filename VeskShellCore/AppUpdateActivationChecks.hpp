#pragma once

#include "VeskShellCore/AppUpdateActivationRecord.hpp"
#include "VeskShellCore/PackagedServiceStatus.hpp"

#include <cstdint>
#include <functional>
#include <optional>

/// What a status of the service says about an update: questions without any state of their own.
namespace vesk::AppUpdateActivationChecks {

/// Whether the service has anything that must be stopped before its files change.
bool needsStop(const PackagedServiceStatus& status);

/// The process of the assistant: the daemon's own word, else the service manager's.
std::optional<std::int64_t> processOf(const PackagedServiceStatus& status);

/// Whether the assistant is down, and the process that it had before.
bool isStopped(const PackagedServiceStatus& status, std::optional<std::int64_t> previousPID,
               const std::function<bool(std::int64_t)>& processIsAlive);

/// Whether the service is on the `expected` release as the record wants it: running there in a new process, or
/// installed and down, or not installed at all.
bool activationComplete(const AppUpdateActivationRecord& record, const PackagedServiceStatus& status,
                        const AppUpdateReleaseIdentity& current, const AppUpdateReleaseIdentity& expected);

/// Whether the installed runtime is the one of the running application, with all its tools.
bool isCurrent(const PackagedServiceStatus& status);

/// Whether a repaired runtime has come up, in another process than `previousPID`, or is down where it should be.
bool isRepaired(const PackagedServiceStatus& status, bool shouldRun, std::optional<std::int64_t> previousPID);

} // namespace vesk::AppUpdateActivationChecks
