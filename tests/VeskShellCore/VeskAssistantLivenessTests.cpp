#include "VeskShellCore/VeskAssistantLiveness.hpp"
#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gtest/gtest.h>
#include <thread>

namespace vesk {
namespace {

/// The clock stands at 2026-04-26T08:30:00Z.
constexpr std::int64_t now = 1'777'192'200'000;

class Liveness : public testing::Test {
protected:
    /// What the probe says of the file's content; the process 77 lives, 78 is another user's.
    std::string state(const std::optional<std::string>& content) {
        platform.fakeProcesses.errors = {{77, 0}, {78, EPERM}};
        if (content) platform.fakeFileReader.files["/health.json"] = *content;
        const VeskAssistantLivenessProbe probe(platform, "/health.json");
        return std::string(rawValue(test::runTask(probe.currentState())));
    }
    static std::string health(const std::string& rest, bool running = true, int version = 1) {
        return R"({"schemaVersion":)" + std::to_string(version) + R"(,"running":)" + (running ? "true" : "false") + rest
               + "}";
    }
    static std::string lease(std::int64_t end, const std::string& pid = "77") {
        return R"(,"expiresAtMs":)" + std::to_string(end) + R"(,"pid":)" + pid;
    }

    test::FakePlatform platform;
};

TEST_F(Liveness, ALeaseAndItsProcessAreNeeded) {
    EXPECT_EQ(state(health(lease(now + 1))), "running");
    EXPECT_EQ(state(health(lease(now))), "running");
    EXPECT_EQ(state(health(lease(now - 1))), "unknown");
    EXPECT_EQ(state(health(lease(now + 1, "78"))), "running");
    EXPECT_EQ(state(health(lease(now + 1, "79"))), "stopped");
    EXPECT_EQ(state(health(lease(now + 1, "2147483648"))), "stopped");
    // 2^32 above the one that lives.
    EXPECT_EQ(state(health(lease(now + 1, "4294967373"))), "stopped");
    EXPECT_EQ(state(health(lease(now + 1, "0"))), "unknown");
    EXPECT_EQ(state(health(lease(now + 1, "-5"))), "unknown");
    EXPECT_EQ(state(health(lease(now + 1, "null"))), "unknown");
    EXPECT_EQ(state(health(R"(,"pid":77)")), "unknown");
}

TEST_F(Liveness, ADaemonThatSaysItHasStoppedIsBelieved) {
    EXPECT_EQ(state(health("", false)), "stopped");
    EXPECT_EQ(state(health(lease(now - 1), false)), "stopped");
    EXPECT_EQ(state(health(lease(now + 1), false)), "stopped");
}

TEST_F(Liveness, AnotherVersionIsNotUnderstood) {
    EXPECT_EQ(state(health(lease(now + 1), true, 2)), "unknown");
    EXPECT_EQ(state(health("", false, 2)), "unknown");
}

TEST_F(Liveness, WhatCannotBeReadIsUnknown) {
    EXPECT_EQ(state(std::nullopt), "unknown");
    for (const char* content : {"", "{", "[]", R"({"schemaVersion":1})", R"({"schemaVersion":"1","running":true})",
                                R"({"schemaVersion":1,"running":1})"})
        EXPECT_EQ(state(content), "unknown") << content;
    EXPECT_EQ(state(health(R"(,"extra":{})" + lease(now + 1))), "running");
}

TEST_F(Liveness, TheProcessTestCanBeReplacedAndIsOnlyAskedWhenItMatters) {
    std::vector<std::int64_t> asked;
    platform.fakeFileReader.files["/health.json"] = health(lease(now + 1, "5"));
    const VeskAssistantLivenessProbe probe(platform, "/health.json", [&](std::int64_t pid) {
        asked.push_back(pid);
        return true;
    });
    EXPECT_EQ(test::runTask(probe.currentState()), VeskAssistantLiveness::running);
    platform.fakeFileReader.files["/health.json"] = health(lease(now + 1, "0"));
    EXPECT_EQ(test::runTask(probe.currentState()), VeskAssistantLiveness::unknown);
    EXPECT_EQ(asked, (std::vector<std::int64_t>{5}));
}

TEST_F(Liveness, ReadsOnAThreadOfItsOwnEvenOnceTheProbeIsGone) {
    std::thread::id asking;
    platform.fakeFileReader.files["/health.json"] = health(lease(now + 1));
    auto asked = VeskAssistantLivenessProbe(platform, "/health.json", [&asking](std::int64_t) {
                     asking = std::this_thread::get_id();
                     return true;
                 }).currentState();
    EXPECT_EQ(test::runTask(std::move(asked)), VeskAssistantLiveness::running);
    EXPECT_NE(asking, std::this_thread::get_id());
    EXPECT_NE(asking, std::thread::id());
}

TEST_F(Liveness, TheFileLiesInTheHomeWhateverTheSupportFolder) {
    platform.fakeEnvironment.variables["VESK_APP_SUPPORT_DIR"] = "/elsewhere";
    EXPECT_EQ(VeskAssistantLivenessProbe::defaultStateFilePath(platform),
              "/home/dana/Library/Application Support/Vesk/data/vesk-health.json");
}

} // namespace
} // namespace vesk
