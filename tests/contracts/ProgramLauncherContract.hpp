#pragma once

#include "VeskPlatform/ProgramLauncher.hpp"
#include "tests/support/OnThreads.hpp"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace vesk::test {

/// How a program of the contract behaves.
struct ProgramBehaviour {
    /// Beyond 128: the number of a signal that ends it.
    std::int32_t status = 0;
    std::string output{}, errors{};
    bool readsInput = false;
    /// Closes its input unread.
    bool ignoresInput = false;
    /// Writes without an end.
    bool stalls = false;
};

/// What every ProgramLauncher owes. `World` is made anew for each test and has:
/// `launcher()`; `program(behaviour)`, a launch of a program that behaves so; `missingProgram()`, a launch that fails
/// with ENOENT from then on; `input()`, what the one program that was started was given.
template <class World> class ProgramLauncherContract : public ::testing::Test {
protected:
    struct Ran {
        std::int32_t status;
        std::string output, errors;
    };
    static Ran finish(RunningProgram& program) {
        const std::int32_t status = program.waitUntilExit();
        std::string output = program.readOutputToEnd();
        return {status, std::move(output), program.readErrorsToEnd()};
    }
    Ran run(const ProgramLaunch& launch) { return finish(*world.launcher().launch(launch)); }
    ProgramLaunch readingProgram(ProgramBehaviour behaviour) {
        behaviour.readsInput = !behaviour.ignoresInput;
        ProgramLaunch launch = world.program(behaviour);
        launch.takesInput = true;
        return launch;
    }

    World world;
};

TYPED_TEST_SUITE_P(ProgramLauncherContract);

TYPED_TEST_P(ProgramLauncherContract, StatusAndBothStreamsAreTheProgramsOwn) {
    const auto ran = this->run(this->world.program({.status = 3, .output = "out\n", .errors = "err"}));
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.output, "out\n");
    EXPECT_EQ(ran.errors, "err");
}

TYPED_TEST_P(ProgramLauncherContract, ASilentProgramGivesNothing) {
    const auto ran = this->run(this->world.program({}));
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.output + ran.errors, "");
}

TYPED_TEST_P(ProgramLauncherContract, ADeathBySignalIs128AndItsNumber) {
    EXPECT_EQ(this->run(this->world.program({.status = 128 + 15})).status, 128 + 15);
}

TYPED_TEST_P(ProgramLauncherContract, InputArrivesToTheByteAndEnds) {
    const std::string input("a\0b\r\n\xff", 6);
    const auto program = this->world.launcher().launch(this->readingProgram({.output = "done"}));
    program->writeInput(input);
    EXPECT_EQ(this->finish(*program).output, "done");
    EXPECT_EQ(this->world.input(), input);
}

TYPED_TEST_P(ProgramLauncherContract, AnEmptyInputIsOne) {
    const auto program = this->world.launcher().launch(this->readingProgram({}));
    program->writeInput("");
    EXPECT_EQ(this->finish(*program).status, 0);
    EXPECT_EQ(this->world.input(), "");
}

TYPED_TEST_P(ProgramLauncherContract, AProgramThatClosesItsInputIsNoFailure) {
    const auto program = this->world.launcher().launch(this->readingProgram({.status = 4, .ignoresInput = true}));
    program->writeInput(std::string(1 << 20, 'x'));
    EXPECT_EQ(this->finish(*program).status, 4);
}

TYPED_TEST_P(ProgramLauncherContract, AProgramNeedNotBeWaitedFor) {
    { const auto dropped = this->world.launcher().launch(this->world.program({})); }
    EXPECT_EQ(this->run(this->world.program({})).status, 0);
}

TYPED_TEST_P(ProgramLauncherContract, AStalledProgramIsTold) {
    const auto program = this->world.launcher().launch(this->world.program({.stalls = true}));
    try {
        program->waitUntilExit();
        FAIL() << "it was waited for";
    } catch (const ProgramStalled& stalled) {
        EXPECT_EQ(stalled.domain(), "VeskProcess");
        EXPECT_EQ(stalled.code(), 1);
        EXPECT_NE(stalled.description(), "");
    }
}

TYPED_TEST_P(ProgramLauncherContract, AProgramThatCannotBeStartedIsToldWithItsPath) {
    const ProgramLaunch missing = this->world.missingProgram();
    try {
        this->world.launcher().launch(missing);
        FAIL() << "it was started";
    } catch (const PosixError& failure) {
        EXPECT_EQ(failure.code(), ENOENT);
        EXPECT_EQ(failure.description(), missing.executable + ": No such file or directory");
    }
}

TYPED_TEST_P(ProgramLauncherContract, ManyThreadsStartProgramsAtOnce) {
    const ProgramLaunch launch = this->world.program({.status = 7, .output = "same"});
    std::vector<std::string> outputs(16);
    onThreads(outputs.size(), [&](std::size_t i) { outputs[i] = this->run(launch).output; });
    EXPECT_EQ(outputs, std::vector<std::string>(outputs.size(), "same"));
}

REGISTER_TYPED_TEST_SUITE_P(ProgramLauncherContract, StatusAndBothStreamsAreTheProgramsOwn, ASilentProgramGivesNothing,
                            ADeathBySignalIs128AndItsNumber, InputArrivesToTheByteAndEnds, AnEmptyInputIsOne,
                            AProgramThatClosesItsInputIsNoFailure, AProgramNeedNotBeWaitedFor, AStalledProgramIsTold,
                            AProgramThatCannotBeStartedIsToldWithItsPath, ManyThreadsStartProgramsAtOnce);

} // namespace vesk::test
