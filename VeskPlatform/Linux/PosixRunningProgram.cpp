#include "VeskPlatform/Linux/PosixRunningProgram.hpp"

#include "VeskPlatform/Linux/BrokenPipeSignal.hpp"
#include "VeskSupport/FilePath.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <span>
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

/// Waits until one of them is ready, however often a signal interrupts it; false where none is in time.
bool waitForAny(std::span<pollfd> ends, milliseconds limit) {
    const auto deadline = steady_clock::now() + limit;
    for (;;) {
        const milliseconds left = std::max(timeUntil(deadline), milliseconds(0));
        const int ready = ::poll(ends.data(), ends.size(), static_cast<int>(left.count()));
        if (ready > 0) return true;
        if (ready == 0) return false;
    }
}

bool isFull(const FileDescriptor& writing) {
    pollfd end{writing.get(), POLLOUT, 0};
    return ::poll(&end, 1, 0) == 0;
}

} // namespace

PosixRunningProgram::PosixRunningProgram(StartedChild child, ProgramStreams streams, std::string name,
                                         milliseconds stallLimit)
    : child_(std::move(child)), streams_(std::move(streams)), name_(std::move(name)), stallLimit_(stallLimit) {}

std::optional<std::string> PosixRunningProgram::fullStream() const {
    if (isFull(streams_.output.writing)) return "standard output";
    if (isFull(streams_.errors.writing)) return "standard error";
    return std::nullopt;
}

void PosixRunningProgram::stop(const std::string& why) {
    child_.end();
    throw ProgramStalled(lastPathComponent(name_) + " " + why + ", and was stopped.");
}

void PosixRunningProgram::writeInput(std::string_view bytes) {
    const BrokenPipeSignal held;
    const FileDescriptor input = std::move(streams_.input); // closed however this ends
    ::fcntl(input.get(), F_SETFL, O_NONBLOCK);              // of this end alone, not of the program's
    while (!bytes.empty()) {
        const ssize_t written = ::write(input.get(), bytes.data(), bytes.size());
        if (written >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (errno == EPIPE || (errno == EAGAIN && !hasRoom(input)))
            return;
        else if (errno != EAGAIN && errno != EINTR)
            throw PosixError(errno, name_);
    }
}

/// Waits for it. False where the program has ended instead: something that it left running may hold the pipe for ever.
bool PosixRunningProgram::hasRoom(const FileDescriptor& input) {
    std::array<pollfd, 2> ends{{{input.get(), POLLOUT, 0}, {child_.handle(), POLLIN, 0}}};
    if (waitForAny(ends, stallLimit_)) return ends[0].revents != 0;
    if (const auto full = fullStream())
        stop("wrote more to " + *full + " than its pipe holds before it had read its input");
    stop("did not read its input");
}

std::int32_t PosixRunningProgram::waitUntilExit() {
    streams_.input.reset(); // of a program that was given none, which would wait for it
    const milliseconds interval = std::clamp(stallLimit_ / 8, milliseconds(1), milliseconds(1000));
    auto hadRoom = steady_clock::now();
    while (!child_.hasEndedWithin(interval)) {
        const auto full = fullStream();
        if (!full)
            hadRoom = steady_clock::now();
        else if (steady_clock::now() - hadRoom >= stallLimit_ + interval) // it may have filled an interval later
            stop("wrote more to " + *full + " than its pipe holds before it ended");
    }
    // Only what the program left running can keep the pipes from their ends now.
    streams_.output.writing.reset();
    streams_.errors.writing.reset();
    readingEnds_ = steady_clock::now() + stallLimit_;
    return child_.takeStatus();
}

std::string PosixRunningProgram::readToEnd(FileDescriptor stream) const {
    std::string bytes;
    std::array<char, 65536> block; // NOLINT(cppcoreguidelines-pro-type-member-init): read fills it
    std::array<pollfd, 1> end{{{stream.get(), POLLIN, 0}}};
    // What is there is read in any case, since the program itself may have written it.
    while (bytes.size() < mostBytes && waitForAny(end, timeUntil(readingEnds_))) {
        const ssize_t count = ::read(stream.get(), block.data(), block.size());
        if (count > 0)
            bytes.append(block.data(), static_cast<std::size_t>(count));
        else if (count == 0)
            break;
        else if (errno != EINTR)
            throw PosixError(errno, name_);
    }
    return bytes;
}

} // namespace vesk
