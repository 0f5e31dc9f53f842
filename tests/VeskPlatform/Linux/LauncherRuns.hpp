#pragma once

#include "VeskPlatform/Linux/PosixProgramLauncher.hpp"
#include "tests/support/HeldProcessResources.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace vesk::test {

/// Programs of a shell. The guard waits long, so that a busy machine fails nothing, but where a test shortens it. Each
/// test has to leave neither descriptors nor children.
class LauncherRuns : public ::testing::Test {
protected:
    struct Ran {
        std::int32_t status;
        std::string output, errors;
    };

    /// The words after the script are $0, $1 and so on.
    static ProgramLaunch shell(const std::string& script, std::vector<std::string> words = {}) {
        words.insert(words.begin(), {"-c", script});
        return {.executable = "/bin/sh", .arguments = std::move(words)};
    }
    static ProgramLaunch reading(ProgramLaunch launch) {
        launch.takesInput = true;
        return launch;
    }
    static Ran finish(RunningProgram& program) {
        const std::int32_t status = program.waitUntilExit();
        std::string output = program.readOutputToEnd();
        return {status, std::move(output), program.readErrorsToEnd()};
    }
    Ran run(const ProgramLaunch& launch) { return finish(*launcher.launch(launch)); }
    Ran run(const ProgramLaunch& launch, std::string_view input) {
        const auto program = launcher.launch(reading(launch));
        program->writeInput(input);
        return finish(*program);
    }
    /// The description of the guard's failure.
    template <class Work> std::string stalled(const Work& work) {
        try {
            work();
        } catch (const ProgramStalled& failure) {
            return failure.description();
        }
        return "no failure";
    }

    void TearDown() override { EXPECT_EQ(HeldProcessResources::now(), before_); }

    void shortenGuard(std::chrono::milliseconds time = std::chrono::milliseconds(60)) {
        launcher = PosixProgramLauncher(time);
    }

    TemporaryFolder folder;
    PosixProgramLauncher launcher;

private:
    HeldProcessResources before_ = HeldProcessResources::now();
};

} // namespace vesk::test
