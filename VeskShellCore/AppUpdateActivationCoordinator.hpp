#pragma once

#include "VeskPlatform/RandomSource.hpp"
#include "VeskShellCore/AppUpdateActivationModels.hpp"
#include "VeskShellCore/AppUpdateActivationRecordStore.hpp"
#include "VeskSupport/SerialExecutor.hpp"
#include "VeskSupport/Task.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace vesk {

/// Carries the assistant across an update of the application: stops it before the files change, and brings it up on the
/// new release after the relaunch, or on the old one where the update did not take. What has to be known in between is
/// the one record of the store.
///
/// A serial object: its operations may be called from any task of any thread and run one at a time on a strand of
/// `executor`; another one may enter where one waits for the runtime or for time to pass. The coordinator and what it
/// was made of outlive its operations.
class AppUpdateActivationCoordinator {
public:
    struct Parts {
        /// The release that is running.
        AppUpdateReleaseIdentity currentIdentity;
        /// Whether the runtime that the service talks to came with the running application.
        bool runtimeIsBundledWithCurrentApp = false;
        AppUpdateActivationRecordStoring& store;
        RandomSource& randomSource;
        AppUpdateActivationService service;
        AppUpdateActivationCoordinatorOptions options;
    };
    using Progress = std::function<void(AppUpdatePreparationProgress)>;
    using ActivationRecord = AppUpdateActivationRecord;
    using Outcome = AppUpdateActivationOutcome;

    AppUpdateActivationCoordinator(const Executor& executor, Parts parts);
    ~AppUpdateActivationCoordinator();
    AppUpdateActivationCoordinator(const AppUpdateActivationCoordinator&) = delete;
    AppUpdateActivationCoordinator& operator=(const AppUpdateActivationCoordinator&) = delete;

    /// None where no update is under way. Throws what the store throws.
    Task<std::optional<ActivationRecord>> pendingRecord();

    /// Keeps a relaunch from reviving an assistant whose user has just signed out. The record as it is then, none where
    /// no update is under way. Throws what the store throws.
    Task<std::optional<ActivationRecord>> suppressAssistantResumeAfterSignOut();

    /// Writes down what is, and stops the assistant. `desiredRunning` is what the user is known to want, none where
    /// the runtime's status decides. Throws AppUpdateActivationStoreError `invalidRecord` for a target of another
    /// channel, AppUpdateCoordinatorError `stopTimedOut`, and what store and runtime throw; the assistant has then been
    /// asked to be as before.
    Task<ActivationRecord> prepareForRelaunch(AppUpdateReleaseIdentity target, std::optional<bool> desiredRunning,
                                              Progress progress);

    /// Says that the updater takes over. Throws AppUpdateCoordinatorError `missingActivationRecord` where there is no
    /// record of that update, and what the store throws; the assistant has then been asked to be as before.
    Task<ActivationRecord> markSparkleHandoff(Uuid updateID);

    /// Called at every launch. Calls that come while one runs share its outcome, and one for an update that is settled
    /// gets the outcome that it came to. Never throws.
    Task<Outcome> recoverAfterLaunch(std::optional<Uuid> expectedUpdateID);

    /// Matches the runtime to the running application, outside any update. Throws AppUpdateCoordinatorError
    /// `verificationFailed` and what the runtime throws.
    Task<AppUpdateRuntimeReconciliationOutcome> reconcileCurrentRuntime(std::optional<bool> desiredRunning);

private:
    struct Recovery;
    class Working;

    Task<std::optional<ActivationRecord>> load();
    Task<std::optional<ActivationRecord>> suppressResume();
    Task<ActivationRecord> prepare(AppUpdateReleaseIdentity target, std::optional<bool> desiredRunning,
                                   Progress progress);
    Task<ActivationRecord> stopAssistant(Working& working, bool stopRequired, std::optional<std::int64_t> previousPID,
                                         const Progress& progress);
    Task<void> abandonPreparation(Working& working, bool stopRequired, std::exception_ptr failure);
    Task<ActivationRecord> handOff(Uuid updateID);
    Task<Outcome> recover(std::optional<Uuid> expectedUpdateID);
    std::shared_ptr<Recovery> startRecovery();
    void settle(Recovery& recovery, std::exception_ptr failure, Outcome outcome);
    Task<Outcome> performRecovery();
    Task<Outcome> recoverTarget(ActivationRecord record);
    Task<void> attempt(Working& working, std::chrono::milliseconds delay);
    Task<Outcome> restoreSource(ActivationRecord record);
    Task<void> bringSourceBack(Working& working);
    Task<AppUpdateRuntimeReconciliationOutcome> reconcile(std::optional<bool> desiredRunning);

    Task<void> activateIfInstalled(const ActivationRecord& record);
    Task<bool> waitForVerifiedState(const ActivationRecord& record, AppUpdateReleaseIdentity expected);
    Task<void> waitUntilStopped(std::optional<std::int64_t> previousPID);
    /// The first status that `accept` takes; none after `limit` of them.
    Task<std::optional<PackagedServiceStatus>> poll(int limit,
                                                    std::function<bool(const PackagedServiceStatus&)> accept);

    ActivationRecord newRecord(const AppUpdateReleaseIdentity& target) const;
    std::optional<ActivationRecord> reusableRecord(const AppUpdateReleaseIdentity& target);
    void save(ActivationRecord& record);
    void trySave(ActivationRecord& record);
    void fail(ActivationRecord& record, const std::string& errorClass);

    SerialExecutor serial_;
    Parts parts_;
    std::shared_ptr<Recovery> activeRecovery_;
    std::optional<Outcome> lastSettledRecoveryOutcome_;
    /// The records that operations are at work on; a sign-out in between reaches them, too.
    std::vector<Working*> working_;
    /// How often a sign-out has asked for the assistant to stay down.
    std::uint64_t suppressions_ = 0;
};

} // namespace vesk
