#pragma once

#include "VeskPlatform/Linux/Chromium/EngineProgram.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"

#include <string>
#include <sys/types.h>

namespace vesk {

/// A running engine: a process group of its own, which dies with this process. Descriptor 3 is what it reads commands
/// from, 4 where it answers; what it says on its standard streams goes to a file.
class EngineProcess {
public:
    /// Throws WebEngineError where it cannot be started.
    EngineProcess(const EngineProgram& program, const std::string& logPath);
    /// Ends the whole group and waits until it is gone.
    ~EngineProcess();
    EngineProcess(const EngineProcess&) = delete;
    EngineProcess& operator=(const EngineProcess&) = delete;

    /// Our ends of the two pipes, for the caller to take.
    FileDescriptor commands, answers;

private:
    pid_t group_ = -1;
};

} // namespace vesk
