#pragma once

#include "VeskPlatform/ProgramLauncher.hpp"

#include <chrono>

namespace vesk {

/// Starts programs with NSTask, which hands on no other descriptors. Pipes hold what the system gives them, 16 to 64
/// KiB; nobody reads them before the program has ended.
class TaskProgramLauncher : public ProgramLauncher {
public:
    /// After `stallLimit` the guard ends a program that a full pipe holds up, and takes what came from a pipe that
    /// others hold open for all of it. The programs may outlive the launcher.
    explicit TaskProgramLauncher(std::chrono::milliseconds stallLimit = std::chrono::seconds(60))
        : stallLimit_(stallLimit) {}

    std::unique_ptr<RunningProgram> launch(const ProgramLaunch& launch) override;

private:
    std::chrono::milliseconds stallLimit_;
};

} // namespace vesk
