#pragma once

#include "VeskPlatform/ProgramLauncher.hpp"

namespace vesk {

/// Starts programs with posix_spawn(3).
class PosixProgramLauncher : public ProgramLauncher {
public:
    std::unique_ptr<RunningProgram> launch(const ProgramLaunch& launch) override;
};

} // namespace vesk
