#include "VeskPlatform/Linux/Pipe.hpp"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace vesk {
namespace {

/// False, with `errno`, where there is no other number left.
bool liftAboveStreams(FileDescriptor& end) {
    if (end.get() > STDERR_FILENO) return true;
    const int lifted = ::fcntl(end.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int failure = errno;
    end.reset(lifted);
    errno = failure;
    return lifted >= 0;
}

} // namespace

std::optional<Pipe> makePipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return std::nullopt;
    Pipe pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
    if (liftAboveStreams(pipe.reading) && liftAboveStreams(pipe.writing)) return pipe;
    const int failure = errno;
    pipe = {};
    errno = failure;
    return std::nullopt;
}

} // namespace vesk
