#include "VeskShellCore/AppUpdateActivationChecks.hpp"

#include "tests/VeskShellCore/UpdateWorld.hpp"

namespace vesk {
namespace {

using namespace AppUpdateActivationChecks;
using Change = std::function<void(PackagedServiceStatus&)>;
using Cases = std::vector<std::pair<const char*, Change>>;

PackagedServiceStatus runningService(std::int64_t process = 1000) {
    test::FakeUpdateRuntime runtime;
    runtime.release = test::targetRelease();
    runtime.install(true);
    runtime.state.pid = runtime.state.daemonRuntime->pid = process;
    return runtime.state;
}
PackagedServiceStatus stoppedService() {
    test::FakeUpdateRuntime runtime;
    runtime.install(true);
    runtime.stop();
    return runtime.state;
}

TEST(UpdateChecks, AnythingThatLivesMustBeStopped) {
    EXPECT_FALSE(needsStop(stoppedService()));
    const Cases cases{{"loaded", [](auto& s) { s.loaded = true; }},
                      {"running", [](auto& s) { s.running = true; }},
                      {"daemon", [](auto& s) { s.daemonRuntime->processAlive = true; }}};
    for (const auto& [name, change] : cases) {
        PackagedServiceStatus status = stoppedService();
        change(status);
        EXPECT_TRUE(needsStop(status)) << name;
    }
    EXPECT_FALSE(needsStop(PackagedServiceStatus{}));
}

TEST(UpdateChecks, TheDaemonsOwnProcessComesFirst) {
    PackagedServiceStatus status;
    EXPECT_EQ(processOf(status), std::nullopt);
    status.pid = 5;
    EXPECT_EQ(processOf(status), 5);
    status.daemonRuntime = PackagedDaemonRuntimeStatus{};
    EXPECT_EQ(processOf(status), 5);
    status.daemonRuntime->pid = 6;
    EXPECT_EQ(processOf(status), 6);
}

TEST(UpdateChecks, IsStoppedWhenNothingOfItIsLeft) {
    const std::function<bool(std::int64_t)> nobody = [](std::int64_t) { return false; };
    const std::function<bool(std::int64_t)> everybody = [](std::int64_t) { return true; };
    PackagedServiceStatus status = stoppedService();
    status.daemonRuntime->pid = 7;
    EXPECT_TRUE(isStopped(status, 7, nobody));
    EXPECT_FALSE(isStopped(status, 7, everybody));
    EXPECT_TRUE(isStopped(status, std::nullopt, everybody));
    status.loaded = true;
    EXPECT_FALSE(isStopped(status, 7, nobody));
    status.loaded = false;
    status.running = true;
    EXPECT_FALSE(isStopped(status, 7, nobody));
}

TEST(UpdateChecks, ADaemonOfAnotherProcessIsNotTheOneThatWasStopped) {
    const std::function<bool(std::int64_t)> nobody = [](std::int64_t) { return false; };
    PackagedServiceStatus status = stoppedService();
    status.daemonRuntime->processAlive = true;
    status.daemonRuntime->pid = 7;
    EXPECT_FALSE(isStopped(status, 7, nobody));
    EXPECT_TRUE(isStopped(status, 8, nobody));
    EXPECT_TRUE(isStopped(status, std::nullopt, nobody));
    status.daemonRuntime->pid.reset();
    EXPECT_FALSE(isStopped(status, std::nullopt, nobody));
    EXPECT_TRUE(isStopped(status, 8, nobody));
    status.daemonRuntime.reset();
    EXPECT_TRUE(isStopped(status, std::nullopt, nobody));
}

class ActivationComplete : public testing::Test {
protected:
    bool complete(const PackagedServiceStatus& status) const {
        return activationComplete(record, status, current, test::targetRelease());
    }
    void expectIncomplete(const PackagedServiceStatus& good, const Cases& cases) const {
        EXPECT_TRUE(complete(good));
        for (const auto& [name, change] : cases) {
            PackagedServiceStatus status = good;
            change(status);
            EXPECT_FALSE(complete(status)) << name;
        }
    }

    AppUpdateActivationRecord record = [] {
        AppUpdateActivationRecord initial;
        initial.assistantWasInstalled = initial.assistantWasRunning = true;
        initial.assistantPIDBeforeUpdate = 999;
        return initial;
    }();
    AppUpdateReleaseIdentity current = test::targetRelease();
};

TEST_F(ActivationComplete, ARunningAssistantMustRunOnTheNewRelease) {
    expectIncomplete(runningService(),
                     {{"not installed", [](auto& s) { s.installed = false; }},
                      {"plist", [](auto& s) { s.plistValid = false; }},
                      {"old launch spec", [](auto& s) { s.launchSpecCurrent = false; }},
                      {"unknown launch spec", [](auto& s) { s.launchSpecCurrent.reset(); }},
                      {"disabled", [](auto& s) { s.enabled = false; }},
                      {"not loaded", [](auto& s) { s.loaded = false; }},
                      {"not running", [](auto& s) { s.running = false; }},
                      {"old identity", [](auto& s) { s.runtimeIdentityCurrent = false; }},
                      {"unknown identity", [](auto& s) { s.runtimeIdentityCurrent.reset(); }},
                      {"no daemon", [](auto& s) { s.daemonRuntime.reset(); }},
                      {"no process", [](auto& s) { s.daemonRuntime->pid.reset(); }},
                      {"same process", [](auto& s) { s.daemonRuntime->pid = 999; }},
                      {"no release", [](auto& s) { s.daemonRuntime->identity.reset(); }},
                      {"version", [](auto& s) { s.daemonRuntime->identity->appVersion = "1.4.0"; }},
                      {"no version", [](auto& s) { s.daemonRuntime->identity->appVersion.reset(); }},
                      {"build", [](auto& s) { s.daemonRuntime->identity->appBuildVersion = "212"; }},
                      {"channel", [](auto& s) { s.daemonRuntime->identity->releaseChannel = "beta"; }}});
}

TEST_F(ActivationComplete, WithoutAnEarlierProcessAnyIsNew) {
    record.assistantPIDBeforeUpdate.reset();
    EXPECT_TRUE(complete(runningService(999)));
    PackagedServiceStatus status = runningService();
    status.enabled = true;
    EXPECT_TRUE(complete(status));
}

TEST_F(ActivationComplete, AnAssistantThatWasDownMustBeDown) {
    record.assistantWasRunning = false;
    expectIncomplete(stoppedService(), {{"running", [](auto& s) { s.running = true; }},
                                        {"alive", [](auto& s) { s.daemonRuntime->processAlive = true; }},
                                        {"not installed", [](auto& s) { s.installed = false; }},
                                        {"plist", [](auto& s) { s.plistValid = false; }},
                                        {"launch spec", [](auto& s) { s.launchSpecCurrent.reset(); }}});
    PackagedServiceStatus status = stoppedService();
    status.daemonRuntime.reset();
    EXPECT_TRUE(complete(status));
}

TEST_F(ActivationComplete, WhereNothingWasInstalledNothingMayBe) {
    record.assistantWasInstalled = false;
    EXPECT_TRUE(complete(PackagedServiceStatus{}));
    EXPECT_FALSE(complete(runningService()));
}

TEST_F(ActivationComplete, TheApplicationItselfMustBeTheExpectedOne) {
    current = test::sourceRelease();
    EXPECT_FALSE(complete(runningService()));
}

TEST(UpdateChecks, ARuntimeIsCurrentWithAllItsTools) {
    PackagedServiceStatus good = runningService();
    good.doctor.requiredPlatformTools = {{.name = "a", .version = "1", .required = false, .installed = true},
                                         {.name = "b",
                                          .version = "1",
                                          .required = true,
                                          .installed = true,
                                          .browserRequired = true,
                                          .browserReady = true}};
    EXPECT_TRUE(isCurrent(good));
    const Cases bad{
        {"plist", [](auto& s) { s.plistValid = false; }},
        {"launch spec", [](auto& s) { s.launchSpecCurrent = false; }},
        {"a tool that is not required", [](auto& s) { s.doctor.requiredPlatformTools[0].installed = false; }},
        {"browser", [](auto& s) { s.doctor.requiredPlatformTools[1].browserReady = false; }},
        {"unknown browser", [](auto& s) { s.doctor.requiredPlatformTools[1].browserReady.reset(); }},
        {"identity", [](auto& s) { s.runtimeIdentityCurrent = false; }}};
    for (const auto& [name, change] : bad) {
        PackagedServiceStatus status = good;
        change(status);
        EXPECT_FALSE(isCurrent(status)) << name;
    }
    const Cases fine{{"unknown launch spec", [](auto& s) { s.launchSpecCurrent.reset(); }},
                     {"unknown identity", [](auto& s) { s.runtimeIdentityCurrent.reset(); }},
                     {"old identity of a service that is down",
                      [](auto& s) {
                          s.running = false;
                          s.runtimeIdentityCurrent = false;
                      }},
                     {"no tools", [](auto& s) { s.doctor.requiredPlatformTools.clear(); }}};
    for (const auto& [name, change] : fine) {
        PackagedServiceStatus status = good;
        change(status);
        EXPECT_TRUE(isCurrent(status)) << name;
    }
}

TEST(UpdateChecks, ARepairedRuntimeRunsInANewProcess) {
    EXPECT_TRUE(isRepaired(runningService(8), true, 7));
    EXPECT_TRUE(isRepaired(runningService(8), true, std::nullopt));
    EXPECT_FALSE(isRepaired(runningService(7), true, 7));
    const Cases bad{{"installed", [](auto& s) { s.installed = false; }},
                    {"plist", [](auto& s) { s.plistValid = false; }},
                    {"launch spec", [](auto& s) { s.launchSpecCurrent.reset(); }},
                    {"running", [](auto& s) { s.running = false; }},
                    {"loaded", [](auto& s) { s.loaded = false; }},
                    {"enabled", [](auto& s) { s.enabled = false; }},
                    {"identity", [](auto& s) { s.runtimeIdentityCurrent.reset(); }}};
    for (const auto& [name, change] : bad) {
        PackagedServiceStatus status = runningService(8);
        change(status);
        EXPECT_FALSE(isRepaired(status, true, 7)) << name;
    }
}

TEST(UpdateChecks, ADaemonThatTellsNoProcessNeedsAnEarlierOne) {
    PackagedServiceStatus status = runningService(8);
    status.daemonRuntime->pid.reset();
    EXPECT_TRUE(isRepaired(status, true, 7));
    EXPECT_FALSE(isRepaired(status, true, std::nullopt));
    status.daemonRuntime.reset();
    EXPECT_TRUE(isRepaired(status, true, 7));
    EXPECT_FALSE(isRepaired(status, true, std::nullopt));
}

TEST(UpdateChecks, ARepairedRuntimeThatShouldBeDownIsDown) {
    EXPECT_TRUE(isRepaired(stoppedService(), false, 7));
    EXPECT_FALSE(isRepaired(runningService(), false, 7));
    PackagedServiceStatus status = stoppedService();
    status.daemonRuntime->processAlive = true;
    EXPECT_FALSE(isRepaired(status, false, 7));
}

} // namespace
} // namespace vesk
