#include "VeskPlatform/Portable/GuardedPipe.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <unistd.h>

namespace vesk {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// What a program left running may write for ever, and faster than it can be read. No program's own output is this
/// long.
constexpr std::size_t mostBytes = std::size_t{64} << 20;

milliseconds timeUntil(steady_clock::time_point time) {
    return std::chrono::ceil<milliseconds>(time - steady_clock::now());
}

} // namespace

bool waitForAny(std::span<pollfd> ends, milliseconds limit) {
    const auto deadline = steady_clock::now() + limit;
    for (;;) {
        const milliseconds left = std::max(timeUntil(deadline), milliseconds(0));
        const int ready = ::poll(ends.data(), static_cast<nfds_t>(ends.size()), static_cast<int>(left.count()));
        if (ready > 0) return true;
        if (ready == 0) return false;
    }
}

bool isFull(int writing) {
    std::array<pollfd, 1> end{{{writing, POLLOUT, 0}}};
    return !waitForAny(end, milliseconds(0));
}

void writeWhileRead(int input, std::string_view bytes, const std::function<bool()>& hasRoom, const std::string& name) {
    ::fcntl(input, F_SETFL, O_NONBLOCK); // of this end alone, not of the program's
    while (!bytes.empty()) {
        const ssize_t written = ::write(input, bytes.data(), bytes.size());
        if (written >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (errno == EPIPE || (errno == EAGAIN && !hasRoom()))
            return;
        else if (errno != EAGAIN && errno != EINTR)
            throw PosixError(errno, name);
    }
}

std::string readUntil(int stream, steady_clock::time_point time, const std::string& name) {
    std::string bytes;
    std::array<char, 65536> block; // NOLINT(cppcoreguidelines-pro-type-member-init): read fills it
    std::array<pollfd, 1> end{{{stream, POLLIN, 0}}};
    // What is there is read in any case, since the program itself may have written it.
    while (bytes.size() < mostBytes && waitForAny(end, timeUntil(time))) {
        const ssize_t count = ::read(stream, block.data(), block.size());
        if (count > 0)
            bytes.append(block.data(), static_cast<std::size_t>(count));
        else if (count == 0)
            break;
        else if (errno != EINTR)
            throw PosixError(errno, name);
    }
    return bytes;
}

} // namespace vesk
