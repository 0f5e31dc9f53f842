#include "VeskShellCore/AppUpdateActivationCoordinator.hpp"

#include "VeskShellCore/AppUpdateActivationChecks.hpp"
#include "VeskShellCore/VeskAssistantRunningIntent.hpp"
#include "VeskSupport/Continuation.hpp"

#include <algorithm>
#include <utility>

namespace vesk {

namespace checks = AppUpdateActivationChecks;
using Phase = AppUpdateActivationPhase;
using ActivationRecord = AppUpdateActivationCoordinator::ActivationRecord;
using Outcome = AppUpdateActivationCoordinator::Outcome;

/// One run of the recovery, and those who wait for it.
struct AppUpdateActivationCoordinator::Recovery {
    std::optional<Outcome> outcome;
    std::vector<std::shared_ptr<Continuation>> waiters;
};

/// A record that an operation works on across its waits.
class AppUpdateActivationCoordinator::Working {
public:
    Working(AppUpdateActivationCoordinator& coordinator, ActivationRecord begun)
        : record(std::move(begun)), coordinator_(coordinator) {
        coordinator_.working_.push_back(this);
    }
    ~Working() { std::erase(coordinator_.working_, this); }
    Working(const Working&) = delete;
    Working& operator=(const Working&) = delete;

    ActivationRecord record;

private:
    AppUpdateActivationCoordinator& coordinator_;
};

AppUpdateActivationCoordinator::AppUpdateActivationCoordinator(const Executor& executor, Parts parts)
    : serial_(executor), parts_(std::move(parts)) {
    auto& options = parts_.options;
    options.stopPollLimit = std::max(options.stopPollLimit, 1);
    options.activationPollLimit = std::max(options.activationPollLimit, 1);
    if (options.retryDelays.empty()) options.retryDelays.emplace_back(0);
}

AppUpdateActivationCoordinator::~AppUpdateActivationCoordinator() = default;

// ---- What callers call

Task<std::optional<ActivationRecord>> AppUpdateActivationCoordinator::pendingRecord() { return serial_.run(load()); }

Task<std::optional<ActivationRecord>> AppUpdateActivationCoordinator::suppressAssistantResumeAfterSignOut() {
    return serial_.run(suppressResume());
}

Task<ActivationRecord> AppUpdateActivationCoordinator::prepareForRelaunch(AppUpdateReleaseIdentity target,
                                                                          std::optional<bool> desiredRunning,
                                                                          Progress progress) {
    return serial_.run(prepare(std::move(target), desiredRunning, std::move(progress)));
}

Task<ActivationRecord> AppUpdateActivationCoordinator::markSparkleHandoff(Uuid updateID) {
    return serial_.run(handOff(updateID));
}

Task<Outcome> AppUpdateActivationCoordinator::recoverAfterLaunch(std::optional<Uuid> expectedUpdateID) {
    return serial_.run(recover(expectedUpdateID));
}

Task<AppUpdateRuntimeReconciliationOutcome>
AppUpdateActivationCoordinator::reconcileCurrentRuntime(std::optional<bool> desiredRunning) {
    return serial_.run(reconcile(desiredRunning));
}

// ---- The record

ActivationRecord AppUpdateActivationCoordinator::newRecord(const AppUpdateReleaseIdentity& target) const {
    ActivationRecord record;
    record.updateID = randomUuid(parts_.randomSource);
    record.sourceVersion = parts_.currentIdentity.version;
    record.sourceBuild = parts_.currentIdentity.build;
    record.targetVersion = target.version;
    record.targetBuild = target.build;
    record.channel = target.channel;
    record.createdAt = parts_.options.now();
    record.updatedAt = record.createdAt;
    return record;
}

std::optional<ActivationRecord> AppUpdateActivationCoordinator::reusableRecord(const AppUpdateReleaseIdentity& target) {
    auto record = parts_.store.load();
    const bool isReusable = record && record->sourceIdentity() == parts_.currentIdentity
                            && record->targetIdentity() == target && record->phase != Phase::activationFailed;
    return isReusable ? record : std::nullopt;
}

void AppUpdateActivationCoordinator::save(ActivationRecord& record) {
    record.updatedAt = parts_.options.now();
    parts_.store.save(record);
}

/// Where a failure is being handled already, or one more attempt is worth more than the file.
void AppUpdateActivationCoordinator::trySave(ActivationRecord& record) {
    try {
        save(record);
    } catch (const std::exception&) { // the record still travels in the outcome
    }
}

void AppUpdateActivationCoordinator::fail(ActivationRecord& record, const std::string& errorClass) {
    record.phase = Phase::activationFailed;
    record.lastErrorClass = errorClass;
    trySave(record);
}

Task<std::optional<ActivationRecord>> AppUpdateActivationCoordinator::load() { co_return parts_.store.load(); }

/// An operation that is at work on the record would otherwise save it again as it was.
Task<std::optional<ActivationRecord>> AppUpdateActivationCoordinator::suppressResume() {
    ++suppressions_;
    for (Working* working : working_) working->record.assistantWasRunning = false;
    auto record = parts_.store.load();
    if (!record || !record->assistantWasRunning) co_return record;
    record->assistantWasRunning = false;
    save(*record);
    lastSettledRecoveryOutcome_.reset();
    co_return record;
}

// ---- Before the relaunch

Task<ActivationRecord> AppUpdateActivationCoordinator::prepare(AppUpdateReleaseIdentity target,
                                                               std::optional<bool> desiredRunning, Progress progress) {
    if (target.channel != parts_.currentIdentity.channel) throw AppUpdateActivationStoreError::invalidRecord();
    lastSettledRecoveryOutcome_.reset();
    progress(AppUpdatePreparationProgress::preparing);
    const auto suppressionsBefore = suppressions_;
    const PackagedServiceStatus status = co_await parts_.service.status();
    const bool stopRequired = checks::needsStop(status);
    const auto previousPID = checks::processOf(status);
    auto record = reusableRecord(target);
    if (!record) {
        record = newRecord(target);
        record->assistantWasInstalled = status.installed;
        const bool signedOutMeanwhile = suppressions_ != suppressionsBefore;
        record->assistantWasRunning =
            !signedOutMeanwhile && VeskAssistantRunningIntent::resolve(status, desiredRunning);
        record->assistantPIDBeforeUpdate = previousPID;
        parts_.store.save(*record);
    }
    Working working(*this, *std::move(record));
    std::exception_ptr failure;
    try {
        co_return co_await stopAssistant(working, stopRequired, previousPID, progress);
    } catch (...) {
        failure = std::current_exception();
    }
    co_await abandonPreparation(working, stopRequired, failure);
    std::rethrow_exception(failure);
}

Task<ActivationRecord> AppUpdateActivationCoordinator::stopAssistant(Working& working, bool stopRequired,
                                                                     std::optional<std::int64_t> previousPID,
                                                                     const Progress& progress) {
    if (stopRequired) {
        progress(AppUpdatePreparationProgress::stoppingAssistant);
        co_await parts_.service.stop();
        co_await waitUntilStopped(previousPID);
    }
    working.record.phase = Phase::assistantStopped;
    working.record.lastErrorClass.reset();
    save(working.record);
    co_return working.record;
}

/// The update is refused, and the assistant is to be as it was.
Task<void> AppUpdateActivationCoordinator::abandonPreparation(Working& working, bool stopRequired,
                                                              std::exception_ptr failure) {
    fail(working.record, classifyUpdateError(failure));
    if (!stopRequired) co_return;
    try {
        co_await parts_.service.activate(working.record.assistantWasRunning);
    } catch (const std::exception&) { // the caller is told of the first failure
    }
}

Task<ActivationRecord> AppUpdateActivationCoordinator::handOff(Uuid updateID) {
    auto record = parts_.store.load();
    if (!record || record->updateID != updateID)
        throw AppUpdateCoordinatorError(AppUpdateCoordinatorError::Kind::missingActivationRecord);
    record->phase = Phase::sparkleHandoff;
    record->lastErrorClass.reset();
    std::exception_ptr failure;
    try {
        save(*record);
    } catch (const std::exception&) {
        failure = std::current_exception();
    }
    if (!failure) co_return *std::move(record);
    co_await restoreSource(*record);
    std::rethrow_exception(failure);
}

// ---- After the launch

Task<Outcome> AppUpdateActivationCoordinator::recover(std::optional<Uuid> expectedUpdateID) {
    const auto& settled = lastSettledRecoveryOutcome_;
    if (!activeRecovery_ && expectedUpdateID && settled && settled->updateID() == expectedUpdateID) co_return *settled;
    const auto recovery = activeRecovery_ ? activeRecovery_ : startRecovery();
    const auto waiter = std::make_shared<Continuation>();
    recovery->waiters.push_back(waiter);
    if (!recovery->outcome) co_await waiter->wait(); // it may be over as soon as it is started
    co_return *recovery->outcome;
}

/// A task of its own, so that none of those who wait for it decides about the others.
std::shared_ptr<AppUpdateActivationCoordinator::Recovery> AppUpdateActivationCoordinator::startRecovery() {
    auto recovery = std::make_shared<Recovery>();
    activeRecovery_ = recovery;
    std::function<void(std::exception_ptr, Outcome)> ended = [this, recovery](std::exception_ptr failure,
                                                                              Outcome outcome) {
        settle(*recovery, std::move(failure), std::move(outcome));
    };
    serial_.start(performRecovery(), std::move(ended));
    return recovery;
}

void AppUpdateActivationCoordinator::settle(Recovery& recovery, std::exception_ptr failure, Outcome outcome) {
    using enum Outcome::Kind;
    activeRecovery_.reset();
    if (!failure && (outcome.kind == completed || outcome.kind == restoredSource || outcome.kind == failed))
        lastSettledRecoveryOutcome_ = outcome;
    recovery.outcome = std::move(outcome);
    for (const auto& waiter : recovery.waiters) waiter->resume(failure);
}

Task<Outcome> AppUpdateActivationCoordinator::performRecovery() {
    std::optional<ActivationRecord> record;
    std::exception_ptr failure;
    try {
        record = parts_.store.load();
    } catch (const std::exception&) {
        failure = std::current_exception();
    }
    if (failure) { // what cannot be read is left alone
        ActivationRecord diagnostic = newRecord(parts_.currentIdentity);
        diagnostic.phase = Phase::activationFailed;
        diagnostic.lastErrorClass = classifyUpdateError(failure);
        co_return Outcome{Outcome::Kind::failed, diagnostic, diagnostic.lastErrorClass};
    }
    if (!record) co_return Outcome{};
    if (parts_.currentIdentity == record->targetIdentity()) co_return co_await recoverTarget(*std::move(record));
    if (parts_.currentIdentity == record->sourceIdentity()) co_return co_await restoreSource(*std::move(record));
    fail(*record, "bundle_identity_mismatch");
    co_return Outcome{Outcome::Kind::waitingForExpectedBundle, std::move(record), std::nullopt};
}

Task<Outcome> AppUpdateActivationCoordinator::recoverTarget(ActivationRecord pending) {
    Working working(*this, std::move(pending));
    ActivationRecord& record = working.record;
    record.phase = Phase::recoveringAfterRelaunch;
    record.lastErrorClass.reset();
    trySave(record);
    std::string errorClass = "activation_failed";
    for (std::size_t i = 0; i < parts_.options.retryDelays.size(); ++i) {
        if (i > 0) {
            record.phase = Phase::recoveringAfterRelaunch;
            trySave(record);
        }
        std::exception_ptr failure;
        try {
            co_await attempt(working, parts_.options.retryDelays[i]);
        } catch (...) {
            failure = std::current_exception();
        }
        if (!failure) co_return Outcome{Outcome::Kind::completed, record, std::nullopt};
        errorClass = classifyUpdateError(failure);
        fail(record, errorClass);
    }
    co_return Outcome{Outcome::Kind::failed, record, errorClass};
}

Task<void> AppUpdateActivationCoordinator::attempt(Working& working, std::chrono::milliseconds delay) {
    ActivationRecord& record = working.record;
    if (delay.count() > 0) co_await parts_.options.sleep(delay);
    ++record.recoveryAttempts;
    save(record);
    co_await activateIfInstalled(record);
    AppUpdateReleaseIdentity target = record.targetIdentity();
    const bool isVerified = co_await waitForVerifiedState(record, std::move(target));
    if (!isVerified) throw AppUpdateCoordinatorError(AppUpdateCoordinatorError::Kind::verificationFailed);
    co_await parts_.service.recordOutcome(record);
    parts_.store.deleteRecord(record.updateID);
}

Task<Outcome> AppUpdateActivationCoordinator::restoreSource(ActivationRecord pending) {
    Working working(*this, std::move(pending));
    std::exception_ptr failure;
    try {
        co_await bringSourceBack(working);
    } catch (...) {
        failure = std::current_exception();
    }
    if (!failure) co_return Outcome{Outcome::Kind::restoredSource, working.record, std::nullopt};
    fail(working.record, classifyUpdateError(failure));
    co_return Outcome{Outcome::Kind::failed, working.record, working.record.lastErrorClass};
}

Task<void> AppUpdateActivationCoordinator::bringSourceBack(Working& working) {
    co_await activateIfInstalled(working.record);
    AppUpdateReleaseIdentity source = working.record.sourceIdentity();
    const bool isVerified = co_await waitForVerifiedState(working.record, std::move(source));
    if (!isVerified) throw AppUpdateCoordinatorError(AppUpdateCoordinatorError::Kind::verificationFailed);
    parts_.store.deleteRecord(working.record.updateID);
}

// ---- Outside any update

Task<AppUpdateRuntimeReconciliationOutcome>
AppUpdateActivationCoordinator::reconcile(std::optional<bool> desiredRunning) {
    using Kind = AppUpdateRuntimeReconciliationOutcome::Kind;
    PackagedServiceStatus status = co_await parts_.service.status();
    if (!status.installed) co_return AppUpdateRuntimeReconciliationOutcome{};
    if (checks::isCurrent(status)) co_return AppUpdateRuntimeReconciliationOutcome{Kind::current, std::move(status)};
    const bool shouldRun = VeskAssistantRunningIntent::resolve(status, desiredRunning);
    const auto previousPID = checks::processOf(status);
    co_await parts_.service.activate(shouldRun);
    std::function<bool(const PackagedServiceStatus&)> repaired = [shouldRun,
                                                                  previousPID](const PackagedServiceStatus& polled) {
        return checks::isRepaired(polled, shouldRun, previousPID);
    };
    auto found = co_await poll(parts_.options.activationPollLimit, std::move(repaired));
    if (!found) throw AppUpdateCoordinatorError(AppUpdateCoordinatorError::Kind::verificationFailed);
    co_return AppUpdateRuntimeReconciliationOutcome{Kind::repaired, std::move(found)};
}

// ---- The runtime

Task<void> AppUpdateActivationCoordinator::activateIfInstalled(const ActivationRecord& record) {
    if (record.assistantWasInstalled) co_await parts_.service.activate(record.assistantWasRunning);
}

Task<bool> AppUpdateActivationCoordinator::waitForVerifiedState(const ActivationRecord& record,
                                                                AppUpdateReleaseIdentity expected) {
    if (parts_.currentIdentity != expected || !parts_.runtimeIsBundledWithCurrentApp) co_return false;
    std::function<bool(const PackagedServiceStatus&)> complete = [&](const PackagedServiceStatus& status) {
        return checks::activationComplete(record, status, parts_.currentIdentity, expected);
    };
    const auto verified = co_await poll(parts_.options.activationPollLimit, std::move(complete));
    co_return verified.has_value();
}

Task<void> AppUpdateActivationCoordinator::waitUntilStopped(std::optional<std::int64_t> previousPID) {
    std::function<bool(const PackagedServiceStatus&)> stopped = [&](const PackagedServiceStatus& status) {
        return checks::isStopped(status, previousPID, parts_.options.processIsAlive);
    };
    const auto found = co_await poll(parts_.options.stopPollLimit, std::move(stopped));
    if (!found) throw AppUpdateCoordinatorError(AppUpdateCoordinatorError::Kind::stopTimedOut);
}

Task<std::optional<PackagedServiceStatus>>
AppUpdateActivationCoordinator::poll(int limit, std::function<bool(const PackagedServiceStatus&)> accept) {
    for (int i = 0; i < limit; ++i) {
        if (i > 0) co_await parts_.options.sleep(parts_.options.pollInterval);
        PackagedServiceStatus status = co_await parts_.service.status();
        if (accept(status)) co_return std::move(status);
    }
    co_return std::nullopt;
}

} // namespace vesk
