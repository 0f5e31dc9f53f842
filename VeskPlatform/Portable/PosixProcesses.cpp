#include "VeskPlatform/Portable/PosixProcesses.hpp"

#include <cerrno>
#include <csignal>

namespace vesk {

int PosixProcesses::errorOfNullSignal(std::int32_t processIdentifier) {
    return ::kill(processIdentifier, 0) == 0 ? 0 : errno;
}

} // namespace vesk
