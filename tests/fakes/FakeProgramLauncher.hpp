#pragma once

#include "VeskPlatform/ProgramLauncher.hpp"

#include <deque>
#include <functional>
#include <mutex>
#include <utility>

namespace vesk::test {

/// Programs whose answers a test gives beforehand. Writes down what was started and each verb in its order.
class FakeProgramLauncher : public ProgramLauncher {
public:
    struct Answer {
        std::int32_t status = 0;
        std::string output, errors;
        /// Called where a program would run: while it is waited for.
        std::function<void()> whileRunning = [] {};
    };
    struct Run {
        ProgramLaunch launch;
        std::optional<std::string> input;
        std::vector<std::string> verbs;
    };

    /// What the next programs answer, in turn; the last one goes on answering.
    std::deque<Answer> answers{Answer{}};
    /// The error number of a launch that fails; 0 for none.
    int launchFailure = 0;
    /// Called where a program is being started.
    std::function<void()> whileLaunching = [] {};
    std::deque<Run> runs;

    std::unique_ptr<RunningProgram> launch(const ProgramLaunch& launch) override {
        const std::scoped_lock lock(mutex_);
        if (launchFailure != 0) throw PosixError(launchFailure, launch.executable);
        whileLaunching();
        runs.push_back({.launch = launch, .input = {}, .verbs = {}});
        Answer answer = answers.front();
        if (answers.size() > 1) answers.pop_front();
        return std::make_unique<Program>(runs.back(), std::move(answer));
    }

private:
    class Program : public RunningProgram {
    public:
        Program(Run& run, Answer answer) : run_(run), answer_(std::move(answer)) {}
        void writeInput(std::string_view bytes) override {
            run_.verbs.emplace_back("write");
            run_.input = bytes;
        }
        std::int32_t waitUntilExit() override {
            run_.verbs.emplace_back("wait");
            answer_.whileRunning();
            return answer_.status;
        }
        std::string readOutputToEnd() override {
            run_.verbs.emplace_back("output");
            return answer_.output;
        }
        std::string readErrorsToEnd() override {
            run_.verbs.emplace_back("errors");
            return answer_.errors;
        }

    private:
        Run& run_; // a deque never moves what it holds
        Answer answer_;
    };

    std::mutex mutex_;
};

} // namespace vesk::test
