#include "VeskPlatform/Linux/PosixProgramLauncher.hpp"
#include "tests/contracts/ProgramLauncherContract.hpp"
#include "tests/fakes/FakeProgramLauncher.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <cerrno>

namespace vesk::test {
namespace {

class FakeWorld {
public:
    ProgramLauncher& launcher() { return launcher_; }
    ProgramLaunch program(const ProgramBehaviour& behaviour) {
        FakeProgramLauncher::Answer answer{
            .status = behaviour.status, .output = behaviour.output, .errors = behaviour.errors};
        if (behaviour.stalls) answer.whileRunning = [] { throw ProgramStalled("It stalled."); };
        launcher_.answers = {answer};
        return {.executable = "/runtime/program"};
    }
    ProgramLaunch missingProgram() {
        launcher_.launchFailure = ENOENT;
        return {.executable = "/no/such/program"};
    }
    std::string input() { return launcher_.runs.back().input.value_or("none"); }

private:
    FakeProgramLauncher launcher_;
};

class PosixWorld {
public:
    ProgramLauncher& launcher() { return launcher_; }
    ProgramLaunch program(const ProgramBehaviour& behaviour) {
        if (behaviour.stalls) return {.executable = "/usr/bin/yes"};
        const bool dies = behaviour.status > 128;
        const std::string end = dies ? "kill -" + std::to_string(behaviour.status - 128) + " $$"
                                     : "exit " + std::to_string(behaviour.status);
        const std::string input = behaviour.readsInput ? "cat > \"$2\"; " : behaviour.ignoresInput ? "exec <&-; " : "";
        return {.executable = "/bin/sh",
                .arguments = {"-c", input + "printf %s \"$0\"; printf %s \"$1\" >&2; " + end, behaviour.output,
                              behaviour.errors, folder_ / "input"}};
    }
    ProgramLaunch missingProgram() { return {.executable = "/no/such/program"}; }
    std::string input() { return folder_.read("input"); }

private:
    TemporaryFolder folder_;
    PosixProgramLauncher launcher_{std::chrono::milliseconds(300)};
};

using Worlds = ::testing::Types<FakeWorld, PosixWorld>;
INSTANTIATE_TYPED_TEST_SUITE_P(All, ProgramLauncherContract, Worlds);

} // namespace
} // namespace vesk::test
