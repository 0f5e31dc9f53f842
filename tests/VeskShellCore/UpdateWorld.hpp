#pragma once

#include "VeskShellCore/AppUpdateActivationCoordinator.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/fakes/FakeUpdateRecordStore.hpp"

#include <asio/co_spawn.hpp>
#include <asio/io_context.hpp>
#include <asio/use_future.hpp>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vesk::test {

inline AppUpdateReleaseIdentity sourceRelease() { return {"1.4.0", "212", "stable"}; }
inline AppUpdateReleaseIdentity targetRelease() { return {"1.5.0", "230", "stable"}; }

/// A runtime with one service. A start gives it a new process of the release that runs.
class FakeUpdateRuntime {
public:
    PackagedServiceStatus state;
    AppUpdateReleaseIdentity release = sourceRelease();
    std::vector<std::string> calls;
    std::vector<AppUpdateActivationRecord> outcomes;
    std::set<std::int64_t> alive;
    /// Calls that fail: "status", "stop", "activate", "recordOutcome".
    std::set<std::string> failing;
    /// Whether a stop and an activation do anything at all.
    bool obeys = true;
    /// Called before each answer, so that a test may let things happen meanwhile.
    std::function<void(const std::string& call)> meanwhile = [](const std::string&) {};
    /// Awaited before each answer.
    std::function<Task<void>()> delay;

    void install(bool running) {
        state.installed = state.plistValid = true;
        state.launchSpecCurrent = true;
        running ? start() : stop();
    }
    void start() {
        const std::int64_t process = nextProcess_++;
        alive = {process};
        state.loaded = state.running = true;
        state.pid = process;
        state.runtimeIdentityCurrent = true;
        PackagedDaemonRuntimeStatus daemon;
        daemon.statePresent = daemon.fresh = daemon.running = daemon.processAlive = true;
        daemon.pid = process;
        daemon.identity = PackagedRuntimeReleaseIdentity{release.version, release.build, release.channel};
        state.daemonRuntime = daemon;
    }
    void stop() {
        alive.clear();
        state.loaded = state.running = false;
        state.pid.reset();
        if (state.daemonRuntime) state.daemonRuntime->running = state.daemonRuntime->processAlive = false;
    }
    bool isRunning() const { return state.running; }

    AppUpdateActivationService service() {
        return {.status = [this] { return answer("status", [] {}); },
                .stop = [this] { return answer("stop", [this] { stop(); }); },
                .activate =
                    [this](bool shouldRun) {
                        return answer(shouldRun ? "activate --running" : "activate --stopped", [this, shouldRun] {
                            stop();
                            if (shouldRun) start();
                        });
                    },
                .recordOutcome = [this](const AppUpdateActivationRecord& record) { return recordOutcome(record); }};
    }

private:
    Task<PackagedServiceStatus> answer(std::string call, std::function<void()> effect) {
        co_await begin(call);
        if (obeys) effect();
        co_return state;
    }
    Task<void> recordOutcome(AppUpdateActivationRecord record) {
        co_await begin("recordOutcome");
        outcomes.push_back(record);
    }
    Task<void> begin(std::string call) {
        calls.push_back(call);
        if (delay) co_await delay();
        meanwhile(call);
        if (failing.contains(call.substr(0, call.find(' ')))) throw PosixError(EIO, "runtime");
    }

    std::int64_t nextProcess_ = 1000;
};

/// A coordinator over a runtime and a record in memory, at a clock that only pauses move.
class UpdateWorld : public testing::Test {
protected:
    UpdateWorld() {
        options.stopPollLimit = 4;
        options.activationPollLimit = 3;
        options.pollInterval = std::chrono::milliseconds(500);
        options.retryDelays = {std::chrono::seconds(0), std::chrono::seconds(2), std::chrono::seconds(5)};
        options.sleep = [this](std::chrono::milliseconds duration) { return pause(duration); };
        options.now = [this] { return clock.time; };
        options.processIsAlive = [this](std::int64_t process) { return runtime.alive.contains(process); };
        runtime.install(true);
    }

    /// A program of that release that has just been launched.
    AppUpdateActivationCoordinator& launch(const AppUpdateReleaseIdentity& release) {
        runtime.release = release;
        coordinator_ = std::make_unique<AppUpdateActivationCoordinator>(
            context.get_executor(), AppUpdateActivationCoordinator::Parts{.currentIdentity = release,
                                                                          .runtimeIsBundledWithCurrentApp = isBundled,
                                                                          .store = store,
                                                                          .randomSource = random,
                                                                          .service = runtime.service(),
                                                                          .options = options});
        return *coordinator_;
    }
    AppUpdateActivationCoordinator& coordinator() { return *coordinator_; }

    template <class T> T run(Task<T> task) {
        auto outcome = asio::co_spawn(context, std::move(task), asio::use_future);
        context.restart();
        context.run();
        return outcome.get();
    }
    AppUpdateActivationRecord prepare(std::optional<bool> desiredRunning = std::nullopt) {
        return run(coordinator().prepareForRelaunch(targetRelease(), desiredRunning,
                                                    [this](auto step) { progress.push_back(step); }));
    }
    AppUpdateActivationOutcome recover(std::optional<Uuid> expected = std::nullopt) {
        return run(coordinator().recoverAfterLaunch(expected));
    }
    Task<void> pause(std::chrono::milliseconds duration) {
        pauses.push_back(duration);
        clock.time += duration;
        if (failsToSleep) throw PosixError(ECANCELED, "sleep");
        co_return;
    }
    std::ptrdiff_t count(const std::string& call) const {
        return std::count(runtime.calls.begin(), runtime.calls.end(), call);
    }

    asio::io_context context;
    FakeClock clock;
    FakeRandomSource random;
    FakeUpdateRecordStore store;
    FakeUpdateRuntime runtime;
    AppUpdateActivationCoordinatorOptions options;
    std::vector<std::chrono::milliseconds> pauses;
    std::vector<AppUpdatePreparationProgress> progress;
    bool isBundled = true, failsToSleep = false;

private:
    std::unique_ptr<AppUpdateActivationCoordinator> coordinator_;
};

} // namespace vesk::test
