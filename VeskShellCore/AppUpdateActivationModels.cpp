#include "VeskShellCore/AppUpdateActivationModels.hpp"

#include "VeskPlatform/Clock.hpp"
#include "VeskPlatform/Platform.hpp"
#include "VeskPlatform/Sleeper.hpp"
#include "VeskShellCore/AppUpdateActivationRecordStore.hpp"
#include "VeskShellCore/VeskAssistantLiveness.hpp"
#include "VeskShellCore/VeskShellClient.hpp"

namespace vesk {
namespace {

const char* descriptionOf(AppUpdateCoordinatorError::Kind kind) {
    using enum AppUpdateCoordinatorError::Kind;
    switch (kind) {
    case stopTimedOut: return "The assistant did not stop in time.";
    case verificationFailed: return "The assistant could not be verified on this release.";
    case missingActivationRecord: break;
    }
    return "No matching update recovery record was found.";
}

const char* classOf(const AppUpdateActivationStoreError& error) {
    using enum AppUpdateActivationStoreError::Kind;
    switch (error.kind()) {
    case unsupportedSchema: return "unsupported_schema";
    case invalidRecord: return "invalid_activation_record";
    case atomicReplacementFailed: break;
    }
    return "runtime_operation_failed";
}

const char* classOf(const AppUpdateCoordinatorError& error) {
    using enum AppUpdateCoordinatorError::Kind;
    switch (error.kind()) {
    case stopTimedOut: return "assistant_stop_timeout";
    case verificationFailed: return "activation_verification_failed";
    case missingActivationRecord: break;
    }
    return "activation_record_missing";
}

} // namespace

AppUpdateActivationService AppUpdateActivationService::of(const VeskShellClient& client) {
    return {
        .status = [client] { return client.serviceStatus(); },
        .stop = [client] { return client.stopService(); },
        .activate = [client](bool shouldRun) { return client.activateService(shouldRun); },
        .recordOutcome =
            [client](const AppUpdateActivationRecord& record) { return client.recordUpdateActivationOutcome(record); }};
}

AppUpdateActivationCoordinatorOptions AppUpdateActivationCoordinatorOptions::of(Platform& platform) {
    AppUpdateActivationCoordinatorOptions options;
    options.sleep = [&sleeper = platform.sleeper()](std::chrono::milliseconds duration) {
        return sleeper.sleep(duration);
    };
    options.now = [&clock = platform.clock()] { return clock.now(); };
    options.processIsAlive = [&processes = platform.processes()](std::int64_t processIdentifier) {
        return isProcessAlive(processes, processIdentifier);
    };
    return options;
}

std::optional<Uuid> AppUpdateActivationOutcome::updateID() const {
    return record ? std::optional(record->updateID) : std::nullopt;
}

AppUpdateCoordinatorError::AppUpdateCoordinatorError(Kind kind)
    : ErrorRecord("AppUpdateCoordinatorError", static_cast<std::int64_t>(kind), descriptionOf(kind)), kind_(kind) {}

std::string classifyUpdateError(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const AppUpdateActivationStoreError& error) {
        return classOf(error);
    } catch (const AppUpdateCoordinatorError& error) {
        return classOf(error);
    } catch (...) {
        return "runtime_operation_failed";
    }
}

} // namespace vesk
