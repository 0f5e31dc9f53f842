#include "tests/vesk/CompanionTest.hpp"

#include <chrono>
#include <fstream>
#include <sys/wait.h>
#include <unistd.h>

namespace vesk::test {
namespace {

/// The number of a process that has ended.
std::string endedProcess() {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(0);
    ::waitpid(child, nullptr, 0);
    return std::to_string(child);
}

class LivenessProgram : public CompanionTest {
protected:
    void put(const std::string& health) const {
        const auto file = program.folder() / "Library/Application Support/Vesk/data/vesk-health.json";
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << health;
    }
    /// A daemon that says it runs, with a lease that ends so many seconds from now.
    void putRunning(int seconds, const std::string& pid) const {
        const auto end = std::chrono::system_clock::now() + std::chrono::seconds(seconds);
        const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(end.time_since_epoch());
        put(R"({"schemaVersion":1,"running":true,"pid":)" + pid + R"(,"expiresAtMs":)"
            + std::to_string(milliseconds.count()) + "}");
    }
    std::string state() const { return textAt(json({"liveness"}), "state"); }
};

TEST_F(LivenessProgram, PrintsTheStateAndNothingElse) {
    const ProgramResult result = vesk({"liveness"});
    EXPECT_EQ(result.status, 0) << result;
    EXPECT_EQ(result.output, "{\n  \"state\" : \"unknown\"\n}\n");
    EXPECT_EQ(result.errorOutput, "");
}

TEST_F(LivenessProgram, ALeaseAndALiveProcessAreRunning) {
    putRunning(60, std::to_string(::getpid()));
    EXPECT_EQ(state(), "running");
}

TEST_F(LivenessProgram, ALeaseWhoseProcessHasGoneIsStopped) {
    putRunning(60, endedProcess());
    EXPECT_EQ(state(), "stopped");
    putRunning(60, "2147483648");
    EXPECT_EQ(state(), "stopped");
}

TEST_F(LivenessProgram, AProcessOfAnotherUserIsRunning) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root may become somebody else";
    putRunning(60, std::to_string(::getpid()));
    program.launcher = {"/usr/bin/setpriv", "--reuid=65534", "--clear-groups", "--inh-caps=-all"};
    std::filesystem::permissions(program.folder(), std::filesystem::perms{0755});
    EXPECT_EQ(state(), "running");
}

TEST_F(LivenessProgram, ADaemonThatSaysItHasStoppedIsStopped) {
    put(R"({"schemaVersion":1,"running":false,"expiresAtMs":1})");
    EXPECT_EQ(state(), "stopped");
}

TEST_F(LivenessProgram, WhatTellsNothingIsUnknown) {
    put("{");
    EXPECT_EQ(state(), "unknown");
    put(R"({"schemaVersion":2,"running":false})");
    EXPECT_EQ(state(), "unknown");
    putRunning(-60, std::to_string(::getpid()));
    EXPECT_EQ(state(), "unknown");
    putRunning(60, "0");
    EXPECT_EQ(state(), "unknown");
}

TEST_F(LivenessProgram, TheSupportFolderOfTheEnvironmentIsNotFollowed) {
    put(R"({"schemaVersion":1,"running":false})");
    program.environment["VESK_APP_SUPPORT_DIR"] = (program.folder() / "elsewhere").string();
    EXPECT_EQ(state(), "stopped");
}

TEST_F(LivenessProgram, AFurtherWordIsRefused) {
    const ProgramResult result = vesk({"liveness", "now"});
    EXPECT_EQ(result.status, 2) << result;
    EXPECT_EQ(result.output, "") << result;
}

} // namespace
} // namespace vesk::test
