#include "tests/VeskPlatform/Linux/LauncherRuns.hpp"

#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "tests/support/ChildSignals.hpp"
#include "tests/support/DescriptorLimit.hpp"
#include "tests/support/OnThreads.hpp"

#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vesk::test {
namespace {

using PosixProgramLauncherTests = LauncherRuns;

/// Sets a variable of this process for as long as it lives.
class Variable {
public:
    Variable(const char* name, const char* value) : name_(name) { ::setenv(name, value, 1); }
    ~Variable() { ::unsetenv(name_); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    const char* name_;
};

TEST_F(PosixProgramLauncherTests, ArgumentsArriveAsTheyAre) {
    const auto ran = run({.executable = "/usr/bin/printf", .arguments = {"%s|", "", "two words", "$HOME", "-n", "ü"}});
    EXPECT_EQ(ran.output, "|two words|$HOME|-n|ü|");
}

TEST_F(PosixProgramLauncherTests, TheProgramIsNamedByItsPath) {
    EXPECT_EQ(run({.executable = "/bin/sh", .arguments = {"-c", "echo \"$0\""}}).output, "/bin/sh\n");
}

TEST_F(PosixProgramLauncherTests, EachSignalCountsFrom128) {
    for (const int signal : {SIGHUP, SIGKILL, SIGSEGV, SIGTERM})
        EXPECT_EQ(run(shell("kill -" + std::to_string(signal) + " $$")).status, 128 + signal);
    EXPECT_EQ(run(shell("exit 255")).status, 255);
}

TEST_F(PosixProgramLauncherTests, VariablesAreSetOverThoseOfThisProcess) {
    const Variable kept("VESK_TEST_KEPT", "kept"), replaced("VESK_TEST", "before"),
        longer("VESK_TEST_LONGER", "longer");
    ProgramLaunch launch = shell("echo \"$VESK_TEST_KEPT $VESK_TEST $VESK_TEST_LONGER $VESK_TEST_NEW\"; env");
    launch.variables = {{"VESK_TEST", "a=b"}, {"VESK_TEST_NEW", "new"}, {"VESK_TEST_EMPTY", ""}};
    const std::string output = run(launch).output;
    EXPECT_THAT(output, ::testing::StartsWith("kept a=b longer new\n"));
    EXPECT_THAT(output, ::testing::HasSubstr("\nVESK_TEST_EMPTY=\n"));
    EXPECT_STREQ(::getenv("VESK_TEST"), "before") << "that of this process";
}

TEST_F(PosixProgramLauncherTests, AReplacedVariableIsThereOnce) {
    const Variable replaced("VESK_TEST", "before");
    ProgramLaunch launch{.executable = "/usr/bin/env"};
    launch.variables = {{"VESK_TEST", "after"}};
    const std::string output = run(launch).output;
    EXPECT_THAT(output, ::testing::HasSubstr("VESK_TEST=after\n"));
    EXPECT_THAT(output, ::testing::Not(::testing::HasSubstr("VESK_TEST=before")));
}

TEST_F(PosixProgramLauncherTests, TheWorkingDirectoryIsTheLaunchsOrThatOfThisProcess) {
    ProgramLaunch launch = shell("pwd -P");
    EXPECT_EQ(run(launch).output, std::filesystem::current_path().string() + "\n");
    launch.workingDirectory = folder.path();
    EXPECT_EQ(run(launch).output, folder.path() + "\n");
    launch.workingDirectory = "/proc/..";
    EXPECT_EQ(run(launch).output, "/\n");
}

TEST_F(PosixProgramLauncherTests, ARelativeProgramIsFoundFromTheFolderOfThisProcess) {
    const std::string path = folder.write("tool", "#!/bin/sh\npwd -P\n");
    ::chmod(path.c_str(), 0755);
    const std::string other = folder / "other";
    ::mkdir(other.c_str(), 0700);
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    const std::string there = run({.executable = "./tool"}).output;
    const std::string elsewhere = run({.executable = "./tool", .workingDirectory = "other"}).output;
    std::filesystem::current_path(before);
    EXPECT_EQ(there, folder.path() + "\n");
    EXPECT_EQ(elsewhere, other + "\n");
}

TEST_F(PosixProgramLauncherTests, WithoutAnInputOfItsOwnItReadsThatOfThisProcess) {
    const FileDescriptor file(::open(folder.write("input", "of the parent").c_str(), O_RDONLY | O_CLOEXEC));
    const FileDescriptor saved(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10));
    ::dup2(file.get(), STDIN_FILENO);
    const auto ran = run({.executable = "/bin/cat"});
    ::dup2(saved.get(), STDIN_FILENO);
    EXPECT_EQ(ran.output, "of the parent");
}

TEST_F(PosixProgramLauncherTests, AnInputThatIsNeverWrittenIsEmpty) {
    EXPECT_EQ(run(reading({.executable = "/bin/cat"})).output, "");
}

TEST_F(PosixProgramLauncherTests, TheInputIsAPipeThatCanBeOpenedAgain) {
    EXPECT_EQ(run({.executable = "/bin/cat", .arguments = {"/dev/stdin"}}, "through the name").output,
              "through the name");
}

TEST_F(PosixProgramLauncherTests, ItHasNoDescriptorsButTheStandardStreams) {
    const int leaked = ::open("/dev/null", O_RDONLY); // not close-on-exec
    EXPECT_EQ(run(reading({.executable = "/bin/ls", .arguments = {"/proc/self/fd"}})).output, "0\n1\n2\n3\n")
        << "3 is the listing's own";
    ::close(leaked);
}

TEST_F(PosixProgramLauncherTests, ItBeginsWithDefaultSignals) {
    const SignalsOfThisProcess changed;
    expectDefaultSignals(run({.executable = "/bin/cat", .arguments = {"/proc/self/status"}}).output);
}

TEST_F(PosixProgramLauncherTests, AParentThatIgnoredItsChildrenTakesNoStatus) {
    std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(run(shell("exit 3")).status, 3);
    std::signal(SIGCHLD, SIG_DFL);
}

TEST_F(PosixProgramLauncherTests, OnlySomePipesAreLarge) {
    shortenGuard();
    std::vector<std::unique_ptr<RunningProgram>> programs;
    for (int i = 0; i < 17; ++i) programs.push_back(launcher.launch(shell("exec head -c 500000 /dev/zero")));
    EXPECT_NE(stalled([&] { finish(*programs.back()); }), "no failure") << "64 KiB is not enough";
    EXPECT_EQ(finish(*programs.front()).output.size(), 500000U);
    programs.clear();
    EXPECT_EQ(run(shell("exec head -c 500000 /dev/zero")).output.size(), 500000U) << "they gave it back";
}

TEST_F(PosixProgramLauncherTests, AProgramOutlivesItsLauncher) {
    auto brief = std::make_unique<PosixProgramLauncher>();
    const auto program = brief->launch(shell("echo here"));
    brief.reset();
    EXPECT_EQ(finish(*program).output, "here\n");
}

TEST_F(PosixProgramLauncherTests, FiveHundredThreadsRunOneEach) {
    const DescriptorLimit limit;
    limit.raise(10'000);
    std::vector<std::string> outputs(500);
    onThreads(outputs.size(),
              [&](std::size_t i) { outputs[i] = run({.executable = "/bin/cat"}, std::to_string(i)).output; });
    for (std::size_t i = 0; i < outputs.size(); ++i) EXPECT_EQ(outputs[i], std::to_string(i));
}

} // namespace
} // namespace vesk::test
