#pragma once

#include "VeskShellCore/AppUpdateActivationRecord.hpp"
#include "VeskShellCore/PackagedServiceStatus.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Instant.hpp"
#include "VeskSupport/Task.hpp"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace vesk {

class Platform;
class VeskShellClient;

/// All that carrying the assistant across an update asks of the runtime. The functions outlive the tasks they return.
struct AppUpdateActivationService {
    std::function<Task<PackagedServiceStatus>()> status;
    std::function<Task<PackagedServiceStatus>()> stop;
    std::function<Task<PackagedServiceStatus>(bool shouldRun)> activate;
    std::function<Task<void>(const AppUpdateActivationRecord& record)> recordOutcome;

    /// The runtime that a client talks to.
    static AppUpdateActivationService of(const VeskShellClient& client);
};

struct AppUpdateActivationCoordinatorOptions {
    /// How often the status is asked for while the assistant stops; at least once.
    int stopPollLimit = 40;
    /// The same while it is verified.
    int activationPollLimit = 60;
    std::chrono::milliseconds pollInterval{500};
    /// A recovery makes one attempt for each, after that pause. None is one attempt without a pause.
    std::vector<std::chrono::milliseconds> retryDelays{std::chrono::seconds(0), std::chrono::seconds(2),
                                                       std::chrono::seconds(5)};
    std::function<Task<void>(std::chrono::milliseconds)> sleep;
    std::function<Instant()> now;
    std::function<bool(std::int64_t processIdentifier)> processIsAlive;

    /// The defaults above, with the platform's clock, pauses and processes. The platform outlives them.
    static AppUpdateActivationCoordinatorOptions of(Platform& platform);
};

/// What the recovery after a launch came to.
struct AppUpdateActivationOutcome {
    enum class Kind {
        /// The assistant is as it was, on the new release; the record is gone.
        completed,
        /// The old release runs, and its assistant is as it was; the record is gone.
        restoredSource,
        /// What runs is neither the old release nor the new one; the record stays.
        waitingForExpectedBundle,
        /// Recovery gave up; the record stays.
        failed,
        noPendingUpdate
    };

    Kind kind = Kind::noPendingUpdate;
    /// Of all but `noPendingUpdate`.
    std::optional<AppUpdateActivationRecord> record;
    /// Of `failed`: a word for machines.
    std::optional<std::string> errorClass;

    std::optional<Uuid> updateID() const;
    bool operator==(const AppUpdateActivationOutcome&) const = default;
};

template <>
inline constexpr auto rawValueTable<AppUpdateActivationOutcome::Kind> =
    std::to_array<std::pair<AppUpdateActivationOutcome::Kind, std::string_view>>({
        {AppUpdateActivationOutcome::Kind::completed, "completed"},
        {AppUpdateActivationOutcome::Kind::restoredSource, "restored_source"},
        {AppUpdateActivationOutcome::Kind::waitingForExpectedBundle, "waiting_for_expected_bundle"},
        {AppUpdateActivationOutcome::Kind::failed, "failed"},
        {AppUpdateActivationOutcome::Kind::noPendingUpdate, "no_pending_update"},
    });

/// What is going on while the user waits for the relaunch.
enum class AppUpdatePreparationProgress { preparing, stoppingAssistant };

/// What became of a runtime that should match the running application.
struct AppUpdateRuntimeReconciliationOutcome {
    enum class Kind { current, repaired, notInstalled };

    Kind kind = Kind::notInstalled;
    /// Of all but `notInstalled`.
    std::optional<PackagedServiceStatus> status;
};

template <>
inline constexpr auto rawValueTable<AppUpdateRuntimeReconciliationOutcome::Kind> =
    std::to_array<std::pair<AppUpdateRuntimeReconciliationOutcome::Kind, std::string_view>>({
        {AppUpdateRuntimeReconciliationOutcome::Kind::current, "current"},
        {AppUpdateRuntimeReconciliationOutcome::Kind::repaired, "repaired"},
        {AppUpdateRuntimeReconciliationOutcome::Kind::notInstalled, "not_installed"},
    });

/// Domain "AppUpdateCoordinatorError"; the code is the kind's place.
class AppUpdateCoordinatorError : public ErrorRecord {
public:
    enum class Kind { stopTimedOut = 1, verificationFailed = 2, missingActivationRecord = 3 };

    explicit AppUpdateCoordinatorError(Kind kind);
    Kind kind() const { return kind_; }

private:
    Kind kind_;
};

/// The word for machines that a record keeps of a failure, never its message.
std::string classifyUpdateError(const std::exception_ptr& failure);

} // namespace vesk
