#include "VeskPlatform/Linux/ChildProcess.hpp"

#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "tests/support/ChildSignals.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vesk::test {
namespace {

/// What a program writes into a named pipe until it ends; waits for its first bytes no longer than ten seconds.
std::string receivedFrom(const FileDescriptor& pipe) {
    pollfd wait{pipe.get(), POLLIN, 0};
    if (::poll(&wait, 1, 10'000) != 1) return "nothing";
    ::fcntl(pipe.get(), F_SETFL, 0);
    std::string text;
    std::array<char, 4096> block{};
    for (ssize_t count = 0; (count = ::read(pipe.get(), block.data(), block.size())) > 0;)
        text.append(block.data(), static_cast<std::size_t>(count));
    return text;
}

TEST(ChildProcessTests, AProgramIsRunWithDefaultSignals) {
    const SignalsOfThisProcess changed;
    const auto result = runProgram({"/bin/cat", "/proc/self/status"});
    ASSERT_TRUE(result);
    expectDefaultSignals(result->output);
}

TEST(ChildProcessTests, ADetachedProgramHasDefaultSignals) {
    const SignalsOfThisProcess changed;
    const TemporaryFolder folder;
    const std::string path = folder / "pipe";
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    const FileDescriptor pipe(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    ASSERT_TRUE(pipe);
    ASSERT_TRUE(startDetached({"/bin/sh", "-c", "exec cat /proc/self/status > \"$0\"", path}));
    expectDefaultSignals(receivedFrom(pipe));
}

TEST(ChildProcessTests, AWriterWhoseReaderWentEnds) {
    const SignalsOfThisProcess changed;
    const auto result = runProgram({"/bin/sh", "-c", "yes | head -n 1"});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->output, "y\n");
    EXPECT_EQ(result->errors, "");
}

TEST(ChildProcessTests, TellsStatusAndBothOutputs) {
    const auto result = runProgram({"/bin/sh", "-c", "echo out; echo err >&2; exit 3"});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 3);
    EXPECT_EQ(result->output, "out\n");
    EXPECT_EQ(result->errors, "err\n");
    EXPECT_EQ(runProgram({"/bin/sh", "-c", "kill -TERM $$"})->status, 128 + SIGTERM);
    EXPECT_EQ(runProgram({"/bin/cat"})->output, "") << "the input is empty";
}

TEST(ChildProcessTests, AParentThatIgnoredItsChildrenTakesNoStatus) {
    std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(runProgram({"/bin/sh", "-c", "exit 3"})->status, 3);
    std::signal(SIGCHLD, SIG_IGN);
    EXPECT_TRUE(startDetached({"/bin/true"}));
    std::signal(SIGCHLD, SIG_DFL);
}

TEST(ChildProcessTests, MuchOutputOnBothStreamsDoesNotStall) {
    const auto result = runProgram({"/bin/sh", "-c", "head -c 3000000 /dev/zero; head -c 300000 /dev/zero >&2"});
    ASSERT_TRUE(result);
    EXPECT_GE(result->output.size(), std::size_t{1} << 20);
    EXPECT_LT(result->output.size(), (std::size_t{1} << 20) + 4096);
    EXPECT_EQ(result->errors.size(), 300000U);
}

TEST(ChildProcessTests, WhatCannotBeStartedIsTold) {
    EXPECT_FALSE(runProgram({"/no/such/program"}));
    EXPECT_FALSE(startDetached({"/no/such/program"}));
    EXPECT_FALSE(startDetached({"/dev/null"}));
}

TEST(ChildProcessTests, DescriptorsOfThisProcessAreClosedInIt) {
    const int leaked = ::open("/dev/null", O_RDONLY); // not close-on-exec
    EXPECT_EQ(runProgram({"/bin/ls", "/proc/self/fd"})->output, "0\n1\n2\n3\n") << "3 is the listing's own";
    ::close(leaked);
}

TEST(ChildProcessTests, ProgramsAreFoundInTheNamedFoldersOnly) {
    EXPECT_EQ(installedProgram("env"), "/usr/bin/env");
    EXPECT_EQ(installedProgram("env", {"/nowhere"}), std::nullopt);
    EXPECT_EQ(installedProgram("no-such-program"), std::nullopt);
}

} // namespace
} // namespace vesk::test
