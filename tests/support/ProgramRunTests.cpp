#include "tests/support/ProgramRun.hpp"

#include <gtest/gtest.h>
#include <sstream>
#include <system_error>

namespace vesk::test {
namespace {

ProgramResult shell(const ProgramRun& program, const std::string& script) { return program.run({"-c", script}); }

TEST(ProgramRun, CapturesBothOutputsAndTheStatus) {
    const ProgramRun program("/bin/sh");
    const auto result = shell(program, "echo out; echo err >&2; exit 3");
    EXPECT_EQ(result.status, 3) << result;
    EXPECT_EQ(result.output, "out\n");
    EXPECT_EQ(result.errorOutput, "err\n");
}

TEST(ProgramRun, CapturesMoreThanAPipeHolds) {
    const ProgramRun program("/bin/sh");
    const auto result = shell(program, "head -c 1000000 /dev/zero; head -c 1000000 /dev/zero >&2");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output.size(), 1'000'000U);
    EXPECT_EQ(result.errorOutput.size(), 1'000'000U);
}

TEST(ProgramRun, EnvironmentIsScrubbed) {
    ProgramRun program("/bin/sh");
    program.environment["VESK_STATE_DIR"] = "/x y";
    const auto result = shell(program, "env | grep -v -e ^PWD= -e ^_= -e ^SHLVL= | sort; pwd");
    EXPECT_EQ(result.output, "DBUS_SYSTEM_BUS_ADDRESS=unix:path=" + program.folder().string() + "/no-bus\nHOME="
                                 + program.folder().string() + "\nLC_ALL=C.UTF-8\nPATH=/usr/bin:/bin\nTZ=UTC\n"
                                 + "VESK_STATE_DIR=/x y\n" + program.folder().string() + "\n")
        << result;
}

TEST(ProgramRun, FolderIsFreshAndGoesWithIt) {
    std::filesystem::path folder;
    {
        const ProgramRun program("/bin/sh"), other("/bin/sh");
        folder = program.folder();
        EXPECT_NE(folder, other.folder());
        EXPECT_EQ(shell(program, "ls -A; mkdir -p a/b; touch a/b/c").output, "");
        EXPECT_TRUE(std::filesystem::exists(folder / "a/b/c"));
    }
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST(ProgramRun, InputComesOnStandardInput) {
    ProgramRun program("/bin/sh");
    EXPECT_EQ(shell(program, "cat").output, "");
    program.input = std::string(200'000, 'x');
    EXPECT_EQ(shell(program, "wc -c").output, "200000\n");
}

TEST(ProgramRun, ThereIsNoTerminal) {
    const ProgramRun program("/bin/sh");
    EXPECT_NE(shell(program, ": < /dev/tty").status, 0);
}

TEST(ProgramRun, SignalsShowInTheStatus) {
    const ProgramRun program("/bin/sh");
    EXPECT_EQ(shell(program, "kill -TERM $$").status, 128 + 15);
}

TEST(ProgramRun, PastItsDeadlineTheSessionIsKilled) {
    ProgramRun program("/bin/sh");
    program.deadline = std::chrono::milliseconds(100);
    const auto result = shell(program, "echo before; sleep 600 & sleep 600");
    EXPECT_EQ(result.status, -1) << result;
    EXPECT_EQ(result.output, "before\n");
}

TEST(ProgramRun, WhatItLeavesRunningIsNotWaitedFor) {
    const ProgramRun program("/bin/sh");
    const auto result = shell(program, "sleep 5 & echo $!");
    EXPECT_EQ(result.status, 0) << result;
    EXPECT_NE(result.output, "");
    shell(program, "kill " + result.output);
}

TEST(ProgramRun, AProgramThatIsNotThereThrows) {
    const ProgramRun program("/no/such/program");
    EXPECT_THROW(program.run({}), std::system_error);
}

TEST(ProgramRun, FailuresTellEverything) {
    const ProgramRun program("/bin/sh");
    std::ostringstream text;
    text << shell(program, "echo out; echo err >&2; exit 3");
    EXPECT_EQ(text.str(),
              "\ncommand: [/bin/sh] [-c] [echo out; echo err >&2; exit 3]\nfolder: " + program.folder().string()
                  + "\nstatus: 3\nstandard output:\nout\n\nstandard error:\nerr\n");
}

} // namespace
} // namespace vesk::test
