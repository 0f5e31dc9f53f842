#include "vesk/UpdateCommands.hpp"

#include "VeskShellCore/AppUpdateActivationCoordinator.hpp"
#include "VeskShellCore/ReleaseIdentity.hpp"
#include "VeskShellCore/VeskShellClient.hpp"
#include "VeskSupport/RunToTheEnd.hpp"
#include "vesk/RuntimeCommands.hpp"
#include "vesk/UpdateRecordCommand.hpp"
#include "vesk/Version.hpp"

namespace vesk {

/// What recovering or reconciling came to, as it is printed.
struct UpdateOutcomeRecord {
    std::string outcome;
    std::optional<AppUpdateActivationRecord> record;
    std::optional<PackagedServiceStatus> status;
    std::optional<std::string> errorClass;
};

template <>
inline constexpr auto recordTable<UpdateOutcomeRecord> =
    recordFields(required("outcome", &UpdateOutcomeRecord::outcome), optional("record", &UpdateOutcomeRecord::record),
                 optional("status", &UpdateOutcomeRecord::status),
                 optional("errorClass", &UpdateOutcomeRecord::errorClass));

namespace {

using Coordinator = AppUpdateActivationCoordinator;

AppUpdateActivationCoordinatorOptions optionsOf(const UpdateCommand& command, Platform& platform) {
    auto options = AppUpdateActivationCoordinatorOptions::of(platform);
    options.stopPollLimit = command.stopPolls;
    options.activationPollLimit = command.activationPolls;
    options.pollInterval = std::chrono::milliseconds(command.pollIntervalMs);
    options.retryDelays.clear();
    for (const int delay : command.retryDelaysMs) options.retryDelays.emplace_back(delay);
    return options;
}

UpdateAnswer answered(const JsonValue& record, bool isSettled = true) { return {writeJson(record) + "\n", isSettled}; }

UpdateAnswer answered(AppUpdateActivationOutcome outcome) {
    using enum AppUpdateActivationOutcome::Kind;
    const bool isSettled = outcome.kind != failed && outcome.kind != waitingForExpectedBundle;
    return answered(toJson(UpdateOutcomeRecord{.outcome = std::string(rawValue(outcome.kind)),
                                               .record = std::move(outcome.record),
                                               .status = std::nullopt,
                                               .errorClass = std::move(outcome.errorClass)}),
                    isSettled);
}

UpdateAnswer answered(AppUpdateRuntimeReconciliationOutcome outcome) {
    return answered(toJson(UpdateOutcomeRecord{.outcome = std::string(rawValue(outcome.kind)),
                                               .record = std::nullopt,
                                               .status = std::move(outcome.status),
                                               .errorClass = std::nullopt}));
}

Task<UpdateAnswer> perform(UpdateCommand command, Coordinator& coordinator) {
    switch (command.verb) {
    case UpdateVerb::prepare: {
        AppUpdateReleaseIdentity target(command.version, command.build, command.channel);
        Coordinator::Progress progress = [](AppUpdatePreparationProgress) {};
        auto preparing = coordinator.prepareForRelaunch(std::move(target), command.desiredRunning, std::move(progress));
        const auto record = co_await std::move(preparing);
        co_return answered(toJson(record));
    }
    case UpdateVerb::handoff: {
        const auto record = co_await coordinator.markSparkleHandoff(*command.updateID);
        co_return answered(toJson(record));
    }
    case UpdateVerb::recover: {
        auto outcome = co_await coordinator.recoverAfterLaunch(command.updateID);
        co_return answered(std::move(outcome));
    }
    case UpdateVerb::show:
    case UpdateVerb::reconcile: break;
    }
    auto outcome = co_await coordinator.reconcileCurrentRuntime(command.desiredRunning);
    co_return answered(std::move(outcome));
}

Task<UpdateAnswer> update(const UpdateCommand& command, Platform& platform, const VeskShellClient& client) {
    AppUpdateActivationRecordStore store(platform, updateRecordPath(command.file, platform));
    Coordinator::Parts parts{.currentIdentity = currentRelease(platform, builtVersion().version),
                             .runtimeIsBundledWithCurrentApp =
                                 client.runtime().source == VeskRuntimeDescriptor::Source::bundledResource,
                             .store = store,
                             .randomSource = platform.randomSource(),
                             .service = AppUpdateActivationService::of(client),
                             .options = optionsOf(command, platform)};
    const Executor executor = co_await currentExecutor();
    Coordinator coordinator(executor, std::move(parts));
    co_return co_await perform(command, coordinator);
}

} // namespace

UpdateAnswer runUpdate(const UpdateCommand& command, Platform& platform) {
    if (command.verb == UpdateVerb::show) // needs no runtime
        return {
            runUpdateRecord({.verb = UpdateRecordVerb::show, .file = command.file, .expectedUpdateID = {}}, platform)};
    const VeskShellClient client(platform, locatedRuntime(platform));
    return answerOf(update(command, platform, client));
}

} // namespace vesk
