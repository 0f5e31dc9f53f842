#pragma once

#include "VeskPlatform/ProgramLauncher.hpp"

#include <atomic>
#include <chrono>
#include <memory>

namespace vesk {

/// Starts programs with posix_spawn(3). Their standard output is a pipe of 1 MiB where the system gives one, since
/// nobody reads it before the program has ended: that is the most that any user may ask for
/// (/proc/sys/fs/pipe-max-size, pipe(7)). It is given to the first sixteen that run at once and the others have the
/// usual 64 KiB, because all pipes of a user share 64 MiB (pipe-user-pages-soft), beyond which every new one of theirs
/// has a mere 8 KiB. A running program takes five descriptors of this process, one more until its input is written,
/// and two more while it starts.
class PosixProgramLauncher : public ProgramLauncher {
public:
    /// After `stallLimit` the guard ends a program that a full pipe holds up, and takes what came from a pipe that
    /// others hold open for all of it. The programs may outlive the launcher.
    explicit PosixProgramLauncher(std::chrono::milliseconds stallLimit = std::chrono::seconds(60))
        : stallLimit_(stallLimit) {}

    std::unique_ptr<RunningProgram> launch(const ProgramLaunch& launch) override;

private:
    std::chrono::milliseconds stallLimit_;
    std::shared_ptr<std::atomic<int>> largePipes_ = std::make_shared<std::atomic<int>>(0);
};

} // namespace vesk
