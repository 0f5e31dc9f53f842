#include "tests/VeskPlatform/Linux/LauncherRuns.hpp"

#include "tests/support/DescriptorLimit.hpp"
#include "tests/support/Privileges.hpp"
#include "tests/support/Sanitizers.hpp"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vesk::test {
namespace {

class PosixProgramLauncherFailureTests : public LauncherRuns {
protected:
    /// "2 /no/such/program", of the error number and the path that it names.
    std::string refused(const ProgramLaunch& launch) {
        try {
            launcher.launch(launch);
        } catch (const PosixError& failure) {
            return std::to_string(failure.code()) + " "
                   + failure.description().substr(0, failure.description().find(':'));
        }
        return "started";
    }
    /// A program that would leave a file, if it ran.
    ProgramLaunch marking() { return shell("echo ran > \"$0\"", {folder / "ran"}); }
    ProgramLaunch markingIn(const std::string& workingDirectory) {
        ProgramLaunch launch = marking();
        launch.workingDirectory = workingDirectory;
        return launch;
    }
};

TEST_F(PosixProgramLauncherFailureTests, ThePathAtFaultIsTold) {
    const std::string plain = folder.write("plain", "#!/bin/sh\n"), text = folder.write("text", "no program\n");
    ::chmod(text.c_str(), 0755);
    ProgramLaunch nulArgument = marking(), nulVariable = marking(), badName = marking(), noName = marking();
    nulArgument.arguments.emplace_back("a\0b", 3);
    nulVariable.variables["A"] = std::string("a\0b", 3);
    badName.variables["A=B"] = "c";
    noName.variables[""] = "c";
    struct Case {
        ProgramLaunch launch;
        int number;
        std::string path;
    };
    for (const auto& [launch, number, path] :
         {Case{{.executable = folder / "missing"}, ENOENT, folder / "missing"}, Case{{.executable = ""}, ENOENT, ""},
          Case{{.executable = "sh"}, ENOENT, "sh"}, Case{{.executable = plain}, EACCES, plain},
          Case{{.executable = folder.path()}, EACCES, folder.path()}, Case{{.executable = text}, ENOEXEC, text},
          Case{{.executable = plain + "/below"}, ENOTDIR, plain + "/below"},
          Case{markingIn(folder / "missing"), ENOENT, folder / "missing"}, Case{markingIn(plain), ENOTDIR, plain},
          Case{markingIn(""), ENOENT, "No such file or directory"}, Case{nulArgument, EINVAL, "/bin/sh"},
          Case{nulVariable, EINVAL, "/bin/sh"}, Case{badName, EINVAL, "/bin/sh"}, Case{noName, EINVAL, "/bin/sh"}}) {
        const std::string expected = std::to_string(number) + " " + (path.empty() ? "No such file or directory" : path);
        EXPECT_EQ(refused(launch), expected);
    }
    EXPECT_FALSE(folder.exists("ran"));
}

TEST_F(PosixProgramLauncherFailureTests, AFolderThatMayNotBeEnteredIsToldAndNotTheProgram) {
    const std::string closed = folder / "closed";
    ASSERT_EQ(::mkdir(closed.c_str(), 0600), 0);
    const WithoutPrivileges held;
    EXPECT_EQ(refused(markingIn(closed)), std::to_string(EACCES) + " " + closed);
    EXPECT_FALSE(folder.exists("ran"));
}

TEST_F(PosixProgramLauncherFailureTests, AFolderThatMayOnlyBeEnteredIsEnough) {
    const std::string unlisted = folder / "unlisted";
    ASSERT_EQ(::mkdir(unlisted.c_str(), 0100), 0);
    const WithoutPrivileges held;
    ProgramLaunch launch = shell("pwd");
    launch.workingDirectory = unlisted;
    EXPECT_EQ(run(launch).output, unlisted + "\n");
}

TEST_F(PosixProgramLauncherFailureTests, AWantOfDescriptorsAnywhereStartsNothingAndLeavesNothing) {
    SKIP_UNDER_SANITIZERS();
    const int firstFree = ::open("/dev/null", O_RDONLY);
    ::close(firstFree);
    ProgramLaunch launch = reading(markingIn(folder.path()));
    const HeldProcessResources before = HeldProcessResources::now();
    int refusals = 0;
    for (bool isStarted = false; !isStarted; ++refusals) {
        std::unique_ptr<RunningProgram> program;
        std::string answer;
        {
            const DescriptorLimit limit;
            limit.set(static_cast<rlim_t>(firstFree + refusals));
            answer = refused(launch);
        }
        isStarted = answer == "started";
        if (isStarted) break;
        EXPECT_THAT(answer, ::testing::StartsWith(std::to_string(EMFILE) + " ")) << refusals;
        EXPECT_EQ(HeldProcessResources::now(), before) << refusals;
        EXPECT_FALSE(folder.exists("ran")) << refusals;
    }
    EXPECT_GE(refusals, 8) << "three pipes, the folder and the handle; some numbers may be taken";
}

/// Closes some of the standard streams for as long as it lives.
class ClosedStreams {
public:
    explicit ClosedStreams(unsigned streams) {
        for (unsigned stream = 0; stream < saved_.size(); ++stream) {
            if ((streams & (1U << stream)) == 0) continue;
            saved_[stream] = ::fcntl(static_cast<int>(stream), F_DUPFD_CLOEXEC, 10);
            ::close(static_cast<int>(stream));
        }
    }
    ~ClosedStreams() {
        for (unsigned stream = 0; stream < saved_.size(); ++stream) {
            if (saved_[stream] < 0) continue;
            ::dup2(saved_[stream], static_cast<int>(stream));
            ::close(saved_[stream]);
        }
    }
    ClosedStreams(const ClosedStreams&) = delete;
    ClosedStreams& operator=(const ClosedStreams&) = delete;

private:
    std::array<int, 3> saved_{-1, -1, -1};
};

TEST_F(PosixProgramLauncherFailureTests, ClosedStreamsOfThisProcessAreNotTheProgramsConcern) {
    ProgramLaunch launch = shell("pwd; cat; echo errors >&2");
    launch.workingDirectory = folder.path();
    for (unsigned streams = 0; streams < 8; ++streams) {
        Ran ran;
        {
            const ClosedStreams closed(streams);
            ran = run(launch, "input");
        }
        EXPECT_EQ(ran.output, folder.path() + "\ninput") << streams;
        EXPECT_EQ(ran.errors, "errors\n") << streams;
    }
}

TEST_F(PosixProgramLauncherFailureTests, WhatThisProcessWritesToItsClosedStreamsReachesNoPipe) {
    for (unsigned streams = 0; streams < 8; ++streams) {
        std::array<bool, 3> wrote{};
        Ran ran;
        {
            const ClosedStreams closed(streams);
            const auto program = launcher.launch(reading(shell("cat; echo errors >&2")));
            for (unsigned stream = 0; stream < wrote.size(); ++stream)
                if ((streams & (1U << stream)) != 0)
                    wrote.at(stream) = ::write(static_cast<int>(stream), "noise", 5) >= 0;
            program->writeInput("input");
            ran = finish(*program);
        }
        EXPECT_EQ(wrote, (std::array<bool, 3>{})) << streams;
        EXPECT_EQ(ran.output, "input") << streams;
        EXPECT_EQ(ran.errors, "errors\n") << streams;
    }
}

} // namespace
} // namespace vesk::test
