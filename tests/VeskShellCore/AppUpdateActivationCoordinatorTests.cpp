#include "tests/VeskShellCore/UpdateWorld.hpp"

#include <asio/detached.hpp>
#include <asio/post.hpp>
#include <asio/use_awaitable.hpp>

namespace vesk {
namespace {

using Phase = AppUpdateActivationPhase;
using Kind = AppUpdateActivationOutcome::Kind;
using Calls = std::vector<std::string>;
using std::chrono::milliseconds;

class UpdateCoordinator : public test::UpdateWorld {
protected:
    /// An update up to the relaunch.
    AppUpdateActivationRecord updateUpToTheRelaunch(std::optional<bool> desiredRunning = std::nullopt) {
        launch(test::sourceRelease());
        const auto record = prepare(desiredRunning);
        run(coordinator().markSparkleHandoff(record.updateID));
        runtime.calls.clear();
        store.saved.clear();
        pauses.clear();
        return record;
    }
    template <class Work> std::string classOf(Work work) {
        try {
            work();
        } catch (...) {
            return classifyUpdateError(std::current_exception());
        }
        return "no failure";
    }
};

// ---- Words

TEST_F(UpdateCoordinator, ClassesOfFailures) {
    using Coordinator = AppUpdateCoordinatorError;
    using Store = AppUpdateActivationStoreError;
    const auto of = [this](const auto& error) { return classOf([&] { throw error; }); };
    EXPECT_EQ(of(Store::unsupportedSchema(2)), "unsupported_schema");
    EXPECT_EQ(of(Store::invalidRecord()), "invalid_activation_record");
    EXPECT_EQ(of(Store::atomicReplacementFailed(28)), "runtime_operation_failed");
    EXPECT_EQ(of(Coordinator(Coordinator::Kind::stopTimedOut)), "assistant_stop_timeout");
    EXPECT_EQ(of(Coordinator(Coordinator::Kind::verificationFailed)), "activation_verification_failed");
    EXPECT_EQ(of(Coordinator(Coordinator::Kind::missingActivationRecord)), "activation_record_missing");
    EXPECT_EQ(of(std::runtime_error("x")), "runtime_operation_failed");
    EXPECT_EQ(of(7), "runtime_operation_failed");
}

TEST_F(UpdateCoordinator, DescriptionsForPeople) {
    using Coordinator = AppUpdateCoordinatorError;
    EXPECT_EQ(Coordinator(Coordinator::Kind::stopTimedOut).description(), "The assistant did not stop in time.");
    EXPECT_EQ(Coordinator(Coordinator::Kind::verificationFailed).description(),
              "The assistant could not be verified on this release.");
    EXPECT_EQ(Coordinator(Coordinator::Kind::missingActivationRecord).description(),
              "No matching update recovery record was found.");
}

// ---- Preparing

TEST_F(UpdateCoordinator, PreparingStopsTheAssistantAndWritesDownWhatWas) {
    launch(test::sourceRelease());
    const std::int64_t process = *runtime.state.pid;
    const auto record = prepare();
    EXPECT_EQ(record.sourceIdentity(), test::sourceRelease());
    EXPECT_EQ(record.targetIdentity(), test::targetRelease());
    EXPECT_TRUE(record.assistantWasInstalled);
    EXPECT_TRUE(record.assistantWasRunning);
    EXPECT_EQ(record.assistantPIDBeforeUpdate, process);
    EXPECT_EQ(record.phase, Phase::assistantStopped);
    EXPECT_EQ(record.createdAt, clock.time);
    EXPECT_EQ(record.recoveryAttempts, 0);
    EXPECT_EQ(record.lastErrorClass, std::nullopt);
    EXPECT_EQ(record.schemaVersion, 1);
    EXPECT_EQ(store.record, record);
    ASSERT_EQ(store.saved.size(), 2u);
    EXPECT_EQ(store.saved[0].phase, Phase::preparingRelaunch);
    EXPECT_EQ(runtime.calls, (Calls{"status", "stop", "status"}));
    using enum AppUpdatePreparationProgress;
    EXPECT_EQ(progress, (std::vector{preparing, stoppingAssistant}));
    EXPECT_EQ(run(coordinator().pendingRecord()), record);
}

TEST_F(UpdateCoordinator, AnotherChannelIsRefused) {
    launch(test::sourceRelease());
    const AppUpdateReleaseIdentity beta("1.5.0", "230", "beta");
    EXPECT_EQ(classOf([&] { run(coordinator().prepareForRelaunch(beta, {}, [](auto) {})); }),
              "invalid_activation_record");
    EXPECT_TRUE(runtime.calls.empty());
    EXPECT_EQ(store.record, std::nullopt);
}

TEST_F(UpdateCoordinator, AnAssistantThatIsDownIsNotStopped) {
    runtime.stop();
    launch(test::sourceRelease());
    const auto record = prepare(false);
    EXPECT_EQ(record.phase, Phase::assistantStopped);
    EXPECT_FALSE(record.assistantWasRunning);
    EXPECT_EQ(runtime.calls, (Calls{"status"}));
    EXPECT_EQ(progress.size(), 1u);
}

TEST_F(UpdateCoordinator, WhatTheUserWantsCountsMoreThanWhatRuns) {
    launch(test::sourceRelease());
    EXPECT_FALSE(prepare(false).assistantWasRunning);
    EXPECT_EQ(count("stop"), 1);
}

TEST_F(UpdateCoordinator, PreparingTheSameUpdateAgainReusesItsRecord) {
    launch(test::sourceRelease());
    const auto first = prepare();
    clock.time += std::chrono::hours(1);
    const auto second = prepare();
    EXPECT_EQ(second.updateID, first.updateID);
    EXPECT_EQ(second.createdAt, first.createdAt);
    EXPECT_EQ(second.updatedAt, clock.time);
    EXPECT_TRUE(second.assistantWasRunning); // although it is down by now
}

TEST_F(UpdateCoordinator, ARecordOfAnotherUpdateOrAFailedOneIsReplaced) {
    using Change = std::function<void(AppUpdateActivationRecord&)>;
    const Change changes[] = {[](auto& r) { r.phase = Phase::activationFailed; },
                              [](auto& r) { r.targetBuild = "231"; }, [](auto& r) { r.sourceVersion = "1.3.0"; }};
    for (const Change& change : changes) {
        launch(test::sourceRelease());
        const Uuid first = prepare().updateID;
        change(*store.record);
        EXPECT_NE(prepare().updateID, first);
    }
}

TEST_F(UpdateCoordinator, AStopThatNeverEndsPutsTheAssistantBack) {
    launch(test::sourceRelease());
    runtime.obeys = false;
    EXPECT_EQ(classOf([&] { prepare(); }), "assistant_stop_timeout");
    EXPECT_EQ(store.record->phase, Phase::activationFailed);
    EXPECT_EQ(store.record->lastErrorClass, "assistant_stop_timeout");
    EXPECT_EQ(runtime.calls, (Calls{"status", "stop", "status", "status", "status", "status", "activate --running"}));
    EXPECT_EQ(pauses, (std::vector(3, milliseconds(500))));
    EXPECT_EQ(store.record->updatedAt, clock.time);
}

TEST_F(UpdateCoordinator, AProcessThatLingersIsNotStopped) {
    launch(test::sourceRelease());
    const std::int64_t process = *runtime.state.pid;
    runtime.meanwhile = [&](const std::string& call) {
        if (call == "status" && runtime.calls.size() > 1) runtime.alive = {process};
    };
    EXPECT_EQ(classOf([&] { prepare(); }), "assistant_stop_timeout");
}

TEST_F(UpdateCoordinator, AFailedStopAsksForTheAssistantAsItWas) {
    launch(test::sourceRelease());
    runtime.failing = {"stop"};
    EXPECT_EQ(classOf([&] { prepare(false); }), "runtime_operation_failed");
    EXPECT_EQ(store.record->lastErrorClass, "runtime_operation_failed");
    EXPECT_EQ(runtime.calls.back(), "activate --stopped");
    runtime.start();
    runtime.failing = {"stop", "activate"};
    EXPECT_THROW(prepare(), PosixError);
}

TEST_F(UpdateCoordinator, ARecordThatCannotBeSavedRefusesTheUpdate) {
    launch(test::sourceRelease());
    store.failsToSave = true;
    EXPECT_THROW(prepare(), AppUpdateActivationStoreError);
    EXPECT_EQ(runtime.calls, (Calls{"status"})); // nothing was stopped yet
    store.failsToSave = false;
    store.failingSaves = {3};
    EXPECT_THROW(prepare(), AppUpdateActivationStoreError);
    EXPECT_EQ(runtime.calls.back(), "activate --running");
    EXPECT_TRUE(runtime.isRunning());
}

TEST_F(UpdateCoordinator, ARecordThatCannotBeReadRefusesTheUpdate) {
    launch(test::sourceRelease());
    store.isCorrupt = true;
    EXPECT_EQ(classOf([&] { prepare(); }), "invalid_activation_record");
    EXPECT_TRUE(runtime.isRunning());
}

// ---- Handing over

TEST_F(UpdateCoordinator, TheHandoffIsWrittenDown) {
    launch(test::sourceRelease());
    const Uuid update = prepare().updateID;
    clock.time += std::chrono::minutes(1);
    const auto record = run(coordinator().markSparkleHandoff(update));
    EXPECT_EQ(record.phase, Phase::sparkleHandoff);
    EXPECT_EQ(record.updatedAt, clock.time);
    EXPECT_EQ(store.record, record);
}

TEST_F(UpdateCoordinator, AHandoffNeedsItsRecord) {
    launch(test::sourceRelease());
    EXPECT_EQ(classOf([&] { run(coordinator().markSparkleHandoff(Uuid())); }), "activation_record_missing");
    const auto record = prepare();
    EXPECT_EQ(classOf([&] { run(coordinator().markSparkleHandoff(Uuid())); }), "activation_record_missing");
    EXPECT_EQ(store.record, record);
}

TEST_F(UpdateCoordinator, AHandoffThatCannotBeSavedBringsTheAssistantBack) {
    launch(test::sourceRelease());
    const Uuid update = prepare().updateID;
    store.failingSaves = {3};
    EXPECT_THROW(run(coordinator().markSparkleHandoff(update)), AppUpdateActivationStoreError);
    EXPECT_TRUE(runtime.isRunning());
    EXPECT_EQ(store.record, std::nullopt);
}

// ---- Recovering

TEST_F(UpdateCoordinator, WithoutARecordThereIsNothingToRecover) {
    launch(test::sourceRelease());
    EXPECT_EQ(recover(), AppUpdateActivationOutcome{});
    EXPECT_EQ(recover().updateID(), std::nullopt);
    EXPECT_TRUE(runtime.calls.empty());
}

TEST_F(UpdateCoordinator, TheTargetBringsTheAssistantUp) {
    const Uuid update = updateUpToTheRelaunch().updateID;
    launch(test::targetRelease());
    const auto outcome = recover(update);
    EXPECT_EQ(outcome.kind, Kind::completed);
    EXPECT_EQ(outcome.updateID(), update);
    EXPECT_EQ(outcome.record->recoveryAttempts, 1);
    EXPECT_EQ(outcome.record->phase, Phase::recoveringAfterRelaunch);
    EXPECT_TRUE(runtime.isRunning());
    EXPECT_EQ(runtime.calls, (Calls{"activate --running", "status", "recordOutcome"}));
    ASSERT_EQ(runtime.outcomes.size(), 1u);
    EXPECT_EQ(runtime.outcomes[0], *outcome.record);
    EXPECT_EQ(store.record, std::nullopt);
    EXPECT_TRUE(pauses.empty());
}

TEST_F(UpdateCoordinator, AnAssistantThatWasDownStaysDown) {
    updateUpToTheRelaunch(false);
    launch(test::targetRelease());
    EXPECT_EQ(recover().kind, Kind::completed);
    EXPECT_EQ(runtime.calls.at(0), "activate --stopped");
    EXPECT_FALSE(runtime.isRunning());
}

TEST_F(UpdateCoordinator, WhereNothingWasInstalledNothingIsActivated) {
    runtime.state = {};
    updateUpToTheRelaunch();
    launch(test::targetRelease());
    EXPECT_EQ(recover().kind, Kind::completed);
    EXPECT_EQ(runtime.calls, (Calls{"status", "recordOutcome"}));
    runtime.state.installed = true;
    store.record = AppUpdateActivationRecord();
    store.record->targetVersion = "1.5.0";
    store.record->targetBuild = "230";
    store.record->channel = "stable";
    EXPECT_EQ(recover().kind, Kind::failed);
}

TEST_F(UpdateCoordinator, AFailingTargetIsTriedAsOftenAsThereAreDelays) {
    updateUpToTheRelaunch();
    launch(test::targetRelease());
    runtime.failing = {"activate"};
    const auto outcome = recover();
    EXPECT_EQ(outcome.kind, Kind::failed);
    EXPECT_EQ(outcome.errorClass, "runtime_operation_failed");
    EXPECT_EQ(outcome.record->recoveryAttempts, 3);
    EXPECT_EQ(outcome.record->phase, Phase::activationFailed);
    EXPECT_EQ(store.record, outcome.record);
    EXPECT_EQ(pauses, (std::vector<milliseconds>{milliseconds(2000), milliseconds(5000)}));
    std::vector<Phase> phases;
    for (const auto& record : store.saved) phases.push_back(record.phase);
    using enum Phase;
    EXPECT_EQ(phases, (std::vector{recoveringAfterRelaunch, recoveringAfterRelaunch, activationFailed,
                                   recoveringAfterRelaunch, recoveringAfterRelaunch, activationFailed,
                                   recoveringAfterRelaunch, recoveringAfterRelaunch, activationFailed}));
}

TEST_F(UpdateCoordinator, TheOutcomeHoldsTheClassOfTheLastFailure) {
    updateUpToTheRelaunch();
    launch(test::targetRelease());
    runtime.failing = {"activate"};
    runtime.meanwhile = [&](const std::string& call) {
        if (count("activate --running") == 3 && call != "status") runtime.failing.clear(), runtime.obeys = false;
    };
    EXPECT_EQ(recover().errorClass, "activation_verification_failed");
    EXPECT_EQ(store.record->lastErrorClass, "activation_verification_failed");
}

TEST_F(UpdateCoordinator, ALaterAttemptMaySucceed) {
    updateUpToTheRelaunch();
    launch(test::targetRelease());
    runtime.failing = {"activate"};
    runtime.meanwhile = [&](const std::string&) {
        if (count("activate --running") == 2) runtime.failing.clear();
    };
    const auto outcome = recover();
    EXPECT_EQ(outcome.kind, Kind::completed);
    EXPECT_EQ(outcome.record->recoveryAttempts, 2);
    EXPECT_EQ(store.record, std::nullopt);
}

TEST_F(UpdateCoordinator, WithoutDelaysThereIsOneAttempt) {
    options.retryDelays.clear();
    updateUpToTheRelaunch();
    launch(test::targetRelease());
    runtime.failing = {"recordOutcome"};
    const auto outcome = recover();
    EXPECT_EQ(outcome.kind, Kind::failed);
    EXPECT_EQ(outcome.record->recoveryAttempts, 1);
    EXPECT_TRUE(pauses.empty());
}

TEST_F(UpdateCoordinator, ADaemonThatNeverRestartedIsNotVerified) {
    const auto record = updateUpToTheRelaunch();
    launch(test::targetRelease());
    runtime.meanwhile = [&](const std::string&) {
        if (runtime.state.daemonRuntime) runtime.state.daemonRuntime->pid = record.assistantPIDBeforeUpdate;
    };
    EXPECT_EQ(recover().errorClass, "activation_verification_failed");
}

TEST_F(UpdateCoordinator, ARuntimeOfElsewhereIsNeverVerified) {
    isBundled = false;
    updateUpToTheRelaunch();
    launch(test::targetRelease());
    EXPECT_EQ(recover().errorClass, "activation_verification_failed");
    EXPECT_EQ(count("status"), 0);
}

TEST_F(UpdateCoordinator, APollThatFailsFailsItsAttempt) {
    updateUpToTheRelaunch();
    launch(test::targetRelease());
    runtime.failing = {"status"};
    EXPECT_EQ(recover().errorClass, "runtime_operation_failed");
    EXPECT_EQ(count("activate --running"), 3);
}

TEST_F(UpdateCoordinator, PollsUntilTheAssistantIsThere) {
    updateUpToTheRelaunch();
    launch(test::targetRelease());
    runtime.meanwhile = [&](const std::string& call) {
        if (call == "status") runtime.state.loaded = count("status") == 3;
    };
    EXPECT_EQ(recover().kind, Kind::completed);
    EXPECT_EQ(pauses, (std::vector(2, milliseconds(500))));
}

TEST_F(UpdateCoordinator, LimitsBelowOneAreOne) {
    options.activationPollLimit = 0;
    options.stopPollLimit = -3;
    updateUpToTheRelaunch();
    launch(test::targetRelease());
    EXPECT_EQ(recover().kind, Kind::completed);
}

TEST_F(UpdateCoordinator, ASleepThatFailsFailsItsAttempt) {
    options.retryDelays = {milliseconds(10)};
    updateUpToTheRelaunch();
    launch(test::targetRelease());
    failsToSleep = true;
    EXPECT_EQ(recover().errorClass, "runtime_operation_failed");
}

TEST_F(UpdateCoordinator, ARecordThatCannotBeRemovedIsAFailure) {
    updateUpToTheRelaunch();
    launch(test::targetRelease());
    store.failsToDelete = true;
    const auto outcome = recover();
    EXPECT_EQ(outcome.kind, Kind::failed);
    EXPECT_EQ(count("recordOutcome"), 3);
}

TEST_F(UpdateCoordinator, ASaveThatFailsFailsItsAttemptButNotTheFirst) {
    updateUpToTheRelaunch();
    launch(test::targetRelease());
    store.failingSaves = {4}; // two of the preparation, one of the handoff, then the first of the recovery
    EXPECT_EQ(recover().kind, Kind::completed);
    updateUpToTheRelaunch();
    launch(test::targetRelease());
    store.failsToSave = true;
    const auto outcome = recover();
    EXPECT_EQ(outcome.errorClass, "runtime_operation_failed");
    EXPECT_EQ(outcome.record->phase, Phase::activationFailed);
    EXPECT_EQ(store.record->phase, Phase::sparkleHandoff);
    EXPECT_EQ(count("activate --running"), 0);
}

TEST_F(UpdateCoordinator, TheSourceBringsTheAssistantBack) {
    const Uuid update = updateUpToTheRelaunch().updateID;
    launch(test::sourceRelease());
    const auto outcome = recover();
    EXPECT_EQ(outcome.kind, Kind::restoredSource);
    EXPECT_EQ(outcome.updateID(), update);
    EXPECT_EQ(outcome.record->recoveryAttempts, 0);
    EXPECT_TRUE(runtime.isRunning());
    EXPECT_EQ(runtime.calls, (Calls{"activate --running", "status"}));
    EXPECT_EQ(store.record, std::nullopt);
}

TEST_F(UpdateCoordinator, ASourceThatCannotBeRestoredHasOneAttempt) {
    updateUpToTheRelaunch();
    launch(test::sourceRelease());
    runtime.obeys = false;
    const auto outcome = recover();
    EXPECT_EQ(outcome.kind, Kind::failed);
    EXPECT_EQ(outcome.errorClass, "activation_verification_failed");
    EXPECT_EQ(count("activate --running"), 1);
    EXPECT_EQ(store.record->phase, Phase::activationFailed);
    EXPECT_EQ(store.record->lastErrorClass, "activation_verification_failed");
}

TEST_F(UpdateCoordinator, AThirdVersionWaits) {
    updateUpToTheRelaunch();
    launch({"1.6.0", "250", "stable"});
    const auto outcome = recover();
    EXPECT_EQ(outcome.kind, Kind::waitingForExpectedBundle);
    EXPECT_EQ(outcome.errorClass, std::nullopt);
    EXPECT_EQ(store.record->lastErrorClass, "bundle_identity_mismatch");
    EXPECT_EQ(store.record->phase, Phase::activationFailed);
    EXPECT_TRUE(runtime.calls.empty());
    launch(test::targetRelease());
    EXPECT_EQ(recover().kind, Kind::completed);
}

TEST_F(UpdateCoordinator, ARecordThatCannotBeReadIsLeftAlone) {
    launch(test::targetRelease());
    store.isCorrupt = true;
    const auto outcome = recover();
    EXPECT_EQ(outcome.kind, Kind::failed);
    EXPECT_EQ(outcome.errorClass, "invalid_activation_record");
    EXPECT_EQ(outcome.record->sourceIdentity(), test::targetRelease());
    EXPECT_EQ(outcome.record->targetIdentity(), test::targetRelease());
    EXPECT_EQ(outcome.record->phase, Phase::activationFailed);
    EXPECT_EQ(outcome.record->lastErrorClass, "invalid_activation_record");
    EXPECT_FALSE(outcome.record->assistantWasInstalled);
    EXPECT_EQ(outcome.record->createdAt, clock.time);
    EXPECT_TRUE(store.isCorrupt);
    EXPECT_TRUE(store.saved.empty());
    EXPECT_EQ(store.deletions, 0);
}

TEST_F(UpdateCoordinator, ASettledUpdateIsNotRecoveredAgain) {
    const Uuid update = updateUpToTheRelaunch().updateID;
    launch(test::targetRelease());
    const auto outcome = recover(update);
    const auto calls = runtime.calls;
    const int loads = store.loads;
    EXPECT_EQ(recover(update), outcome);
    EXPECT_EQ(runtime.calls, calls);
    EXPECT_EQ(store.loads, loads);
    EXPECT_EQ(recover(Uuid()), AppUpdateActivationOutcome{});
    EXPECT_EQ(recover(), AppUpdateActivationOutcome{});
}

TEST_F(UpdateCoordinator, AnOutcomeThatMayChangeIsNotKept) {
    const Uuid update = updateUpToTheRelaunch().updateID;
    launch({"1.6.0", "250", "stable"});
    recover(update);
    const int loads = store.loads;
    recover(update);
    EXPECT_EQ(store.loads, loads + 1);
}

TEST_F(UpdateCoordinator, ANewPreparationForgetsTheSettledUpdate) {
    const Uuid update = updateUpToTheRelaunch().updateID;
    launch(test::sourceRelease());
    recover(update);
    store.failsToSave = true;
    EXPECT_ANY_THROW(prepare());
    EXPECT_EQ(recover(update), AppUpdateActivationOutcome{});
}

TEST_F(UpdateCoordinator, CallsThatOverlapShareOneRecovery) {
    updateUpToTheRelaunch();
    launch(test::targetRelease());
    runtime.delay = [this]() -> Task<void> { co_await asio::post(context.get_executor(), asio::use_awaitable); };
    auto first = asio::co_spawn(context, coordinator().recoverAfterLaunch({}), asio::use_future);
    auto second = asio::co_spawn(context, coordinator().recoverAfterLaunch({}), asio::use_future);
    context.restart();
    context.run();
    const auto outcome = first.get();
    EXPECT_EQ(outcome.kind, Kind::completed);
    EXPECT_EQ(second.get(), outcome);
    EXPECT_EQ(count("activate --running"), 1);
}

// ---- Signing out in between

TEST_F(UpdateCoordinator, ASignOutKeepsTheAssistantDown) {
    updateUpToTheRelaunch();
    clock.time += std::chrono::minutes(2);
    const auto record = run(coordinator().suppressAssistantResumeAfterSignOut());
    ASSERT_TRUE(record);
    EXPECT_FALSE(record->assistantWasRunning);
    EXPECT_EQ(record->updatedAt, clock.time);
    EXPECT_EQ(store.record, record);
    launch(test::targetRelease());
    EXPECT_EQ(recover().kind, Kind::completed);
    EXPECT_FALSE(runtime.isRunning());
}

TEST_F(UpdateCoordinator, ASignOutWithoutAnUpdateChangesNothing) {
    launch(test::sourceRelease());
    EXPECT_EQ(run(coordinator().suppressAssistantResumeAfterSignOut()), std::nullopt);
    updateUpToTheRelaunch(false);
    const auto before = store.record;
    EXPECT_EQ(run(coordinator().suppressAssistantResumeAfterSignOut()), before);
    EXPECT_TRUE(store.saved.empty());
}

TEST_F(UpdateCoordinator, ASignOutDuringAnyStepIsNotUndone) {
    for (const std::string step : {"status", "stop", "activate --running", "recordOutcome"}) {
        SCOPED_TRACE(step);
        runtime.install(true);
        runtime.meanwhile = [](const std::string&) {};
        launch(test::sourceRelease());
        bool signedOut = false;
        const auto signOutAt = [&](const std::string& call) {
            if (call != step || signedOut) return;
            signedOut = true;
            asio::co_spawn(context, coordinator().suppressAssistantResumeAfterSignOut(), asio::detached);
        };
        runtime.delay = [this]() -> Task<void> {
            for (int i = 0; i < 5; ++i) co_await asio::post(context.get_executor(), asio::use_awaitable);
        };
        const bool isOfPreparation = step == "status" || step == "stop";
        if (isOfPreparation) runtime.meanwhile = signOutAt;
        prepare();
        if (isOfPreparation) {
            EXPECT_FALSE(store.record->assistantWasRunning);
        }
        runtime.meanwhile = signOutAt;
        launch(test::targetRelease());
        const auto outcome = recover();
        EXPECT_TRUE(signedOut);
        EXPECT_FALSE(store.record && store.record->assistantWasRunning);
        if (isOfPreparation) {
            EXPECT_FALSE(runtime.isRunning());
        }
    }
}

// ---- Outside any update

TEST_F(UpdateCoordinator, ReconcilingLeavesACurrentRuntimeAlone) {
    launch(test::sourceRelease());
    const auto outcome = run(coordinator().reconcileCurrentRuntime({}));
    EXPECT_EQ(outcome.kind, AppUpdateRuntimeReconciliationOutcome::Kind::current);
    EXPECT_EQ(outcome.status, runtime.state);
    EXPECT_EQ(runtime.calls, (Calls{"status"}));
}

TEST_F(UpdateCoordinator, ReconcilingWhereNothingIsInstalled) {
    runtime.state = {};
    launch(test::sourceRelease());
    EXPECT_EQ(run(coordinator().reconcileCurrentRuntime(true)).kind,
              AppUpdateRuntimeReconciliationOutcome::Kind::notInstalled);
    EXPECT_EQ(runtime.calls, (Calls{"status"}));
}

TEST_F(UpdateCoordinator, ReconcilingRepairsAnOldRuntime) {
    launch(test::sourceRelease());
    runtime.state.runtimeIdentityCurrent = false;
    const auto outcome = run(coordinator().reconcileCurrentRuntime({}));
    EXPECT_EQ(outcome.kind, AppUpdateRuntimeReconciliationOutcome::Kind::repaired);
    EXPECT_EQ(outcome.status, runtime.state);
    EXPECT_EQ(runtime.calls, (Calls{"status", "activate --running", "status"}));
    runtime.state.plistValid = false;
    runtime.meanwhile = [&](const std::string& call) {
        if (call.starts_with("activate")) runtime.state.plistValid = true;
    };
    EXPECT_EQ(run(coordinator().reconcileCurrentRuntime(false)).kind,
              AppUpdateRuntimeReconciliationOutcome::Kind::repaired);
    EXPECT_FALSE(runtime.isRunning());
}

TEST_F(UpdateCoordinator, ARuntimeThatCannotBeRepairedIsAFailure) {
    launch(test::sourceRelease());
    runtime.state.launchSpecCurrent = false;
    EXPECT_EQ(classOf([&] { run(coordinator().reconcileCurrentRuntime({})); }), "activation_verification_failed");
    EXPECT_EQ(count("status"), 4);
    EXPECT_EQ(pauses.size(), 2u);
}

} // namespace
} // namespace vesk
