#include "VeskPlatform/Linux/PosixProgramLauncher.hpp"

#include <cerrno>

namespace vesk {

std::unique_ptr<RunningProgram> PosixProgramLauncher::launch(const ProgramLaunch& launch) {
    throw PosixError(ENOSYS, launch.executable);
}

} // namespace vesk
