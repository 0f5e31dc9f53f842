#include "tests/VeskPlatform/Linux/LauncherRuns.hpp"

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace vesk::test {
namespace {

using PosixProgramLauncherGuardTests = LauncherRuns;

const std::string megabytes(std::size_t{3} << 20, 'x');

TEST_F(PosixProgramLauncherGuardTests, MegabytesOnEitherStreamAreStopped) {
    shortenGuard();
    struct Case {
        std::string script, failure;
    };
    for (const auto& [script, failure] :
         {Case{"exec head -c 3000000 /dev/zero",
               "sh wrote more to standard output than its pipe holds before it ended, and was stopped."},
          Case{"exec head -c 3000000 /dev/zero >&2",
               "sh wrote more to standard error than its pipe holds before it ended, and was stopped."}})
        EXPECT_EQ(stalled([&] { run(shell(script)); }), failure);
}

TEST_F(PosixProgramLauncherGuardTests, TheGuardsTimeBeginsWhenThePipeIsFull) {
    shortenGuard();
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_NE(stalled([&] { run(shell("sleep 0.1; exec head -c 3000000 /dev/zero")); }), "no failure");
    EXPECT_GE(std::chrono::steady_clock::now() - begun, std::chrono::milliseconds(160));
}

TEST_F(PosixProgramLauncherGuardTests, AProgramThatEndsWithAFullPipeIsHeardOut) {
    const auto ran = run(shell("head -c 1048576 /dev/zero; head -c 65536 /dev/zero >&2; exit 5"));
    EXPECT_EQ(ran.status, 5);
    EXPECT_EQ(ran.output.size(), 1048576U);
    EXPECT_EQ(ran.errors.size(), 65536U);
}

TEST_F(PosixProgramLauncherGuardTests, SilenceIsWaitedFor) {
    shortenGuard();
    const auto ran = run(shell("sleep 0.2; echo late"));
    EXPECT_EQ(ran.output, "late\n") << "longer than the guard's time, with no pipe full";
}

TEST_F(PosixProgramLauncherGuardTests, AnInputThatNobodyReadsIsStopped) {
    shortenGuard();
    EXPECT_EQ(stalled([&] { run(shell("exec sleep 100"), megabytes); }), "sh did not read its input, and was stopped.");
}

TEST_F(PosixProgramLauncherGuardTests, AnInputThatThePipeHoldsNeedsNoReader) {
    EXPECT_EQ(run(shell("exit 2"), std::string(65536, 'x')).status, 2);
}

TEST_F(PosixProgramLauncherGuardTests, AnInputThatIsReadSlowlyIsWrittenToItsEnd) {
    shortenGuard(std::chrono::milliseconds(200));
    const auto ran = run(shell("(for i in 1 2 3 4 5 6; do sleep 0.05; head -c 65536; done; cat) | wc -c"),
                         std::string(std::size_t{8} << 16, 'x'));
    EXPECT_EQ(ran.output, "524288\n") << "each wait is shorter than the guard's time, all are longer";
}

TEST_F(PosixProgramLauncherGuardTests, AClosedInputEndsTheWriteWithoutASignal) {
    sigset_t pending;
    const auto ran = run(shell("exec <&-; echo done; exit 0"), megabytes);
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.output, "done\n");
    ::sigpending(&pending);
    EXPECT_EQ(::sigismember(&pending, SIGPIPE), 0);
    ::pthread_sigmask(SIG_BLOCK, nullptr, &pending);
    EXPECT_EQ(::sigismember(&pending, SIGPIPE), 0) << "blocked";
}

TEST_F(PosixProgramLauncherGuardTests, ASignalThatWasWaitingIsLeftToItsReceiver) {
    sigset_t broken, before, pending;
    ::sigemptyset(&broken);
    ::sigaddset(&broken, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &broken, &before);
    ::raise(SIGPIPE);
    run(shell("exec <&-"), megabytes);
    ::sigpending(&pending);
    EXPECT_EQ(::sigismember(&pending, SIGPIPE), 1);
    const timespec atOnce{};
    ::sigtimedwait(&broken, nullptr, &atOnce);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST_F(PosixProgramLauncherGuardTests, AnEchoThatFitsComesBackWhole) {
    const std::string input(700'000, 'e');
    EXPECT_EQ(run(shell("exec cat"), input).output, input);
}

TEST_F(PosixProgramLauncherGuardTests, AnEchoThatFillsBothPipesIsStopped) {
    shortenGuard();
    EXPECT_EQ(stalled([&] { run(shell("exec cat"), megabytes); }),
              "sh wrote more to standard output than its pipe holds before it had read its input, and was stopped.");
}

TEST_F(PosixProgramLauncherGuardTests, WhatItLeftRunningDoesNotHoldTheOutputUp) {
    shortenGuard();
    const auto ran = run(shell("sleep 100 & echo $!; echo heard >&2"));
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.errors, "heard\n");
    const pid_t left = std::stoi(ran.output);
    EXPECT_EQ(::kill(left, SIGKILL), 0) << "it still runs";
}

TEST_F(PosixProgramLauncherGuardTests, WhatItLeftRunningHoldsBothStreamsUpForOneGuardsTime) {
    shortenGuard(std::chrono::milliseconds(500));
    const auto program = launcher.launch(shell("sleep 100 & echo $!"));
    EXPECT_EQ(program->waitUntilExit(), 0);
    const std::string output = program->readOutputToEnd();
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_EQ(program->readErrorsToEnd(), "");
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::milliseconds(300));
    ::kill(std::stoi(output), SIGKILL);
}

TEST_F(PosixProgramLauncherGuardTests, WhatItLeftWritingIsNotReadForEver) {
    shortenGuard();
    const auto slow = run(shell("echo heard; (while :; do echo; sleep 0.01; done) &"));
    EXPECT_THAT(slow.output, ::testing::StartsWith("heard\n"));
    const auto fast = run(shell("echo heard; yes & exit 0"));
    EXPECT_THAT(fast.output, ::testing::StartsWith("heard\n"));
    EXPECT_LE(fast.output.size(), (std::size_t{64} << 20) + 65536);
}

TEST_F(PosixProgramLauncherGuardTests, WhatItLeftRunningIsReadToItsEnd) {
    const std::string path = folder / "begin";
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    const auto program = launcher.launch(shell("echo early; (read line < \"$0\"; echo late) & exit 0", {path}));
    EXPECT_EQ(program->waitUntilExit(), 0);
    std::ofstream(path) << "go\n";
    EXPECT_EQ(program->readOutputToEnd(), "early\nlate\n");
    EXPECT_EQ(program->readErrorsToEnd(), "");
}

TEST_F(PosixProgramLauncherGuardTests, AnInputThatOnlyItsLeftoversHoldEndsWithTheProgram) {
    const auto program = launcher.launch(reading(shell("exec 3<&0; sleep 100 >/dev/null 2>&1 & echo $!")));
    program->writeInput(megabytes);
    const auto ran = finish(*program);
    EXPECT_EQ(ran.status, 0);
    ::kill(std::stoi(ran.output), SIGKILL);
}

TEST_F(PosixProgramLauncherGuardTests, AProgramThatIsNotWaitedForIsKilledAndReaped) {
    { const auto dropped = launcher.launch(shell("exec sleep 100")); }
    {
        const auto written = launcher.launch(reading(shell("exec sleep 100")));
        written->writeInput("something");
    }
    EXPECT_EQ(run(shell("exit 0")).status, 0);
}

} // namespace
} // namespace vesk::test
