#include "VeskPlatform/Linux/PosixRunningProgram.hpp"

#include "VeskPlatform/Linux/BrokenPipeSignal.hpp"
#include "VeskPlatform/Portable/GuardedPipe.hpp"
#include "VeskSupport/FilePath.hpp"

#include <algorithm>
#include <array>
#include <poll.h>

namespace vesk {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

} // namespace

PosixRunningProgram::PosixRunningProgram(StartedChild child, ProgramStreams streams, std::string name,
                                         milliseconds stallLimit)
    : child_(std::move(child)), streams_(std::move(streams)), name_(std::move(name)), stallLimit_(stallLimit) {}

std::optional<std::string> PosixRunningProgram::fullStream() const {
    if (isFull(streams_.output.writing.get())) return "standard output";
    if (isFull(streams_.errors.writing.get())) return "standard error";
    return std::nullopt;
}

void PosixRunningProgram::stop(const std::string& why) {
    child_.end();
    throw ProgramStalled(lastPathComponent(name_) + " " + why + ", and was stopped.");
}

void PosixRunningProgram::writeInput(std::string_view bytes) {
    const BrokenPipeSignal held;
    const FileDescriptor input = std::move(streams_.input); // closed however this ends
    writeWhileRead(
        input.get(), bytes, [&] { return hasRoom(input); }, name_);
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
    return readUntil(stream.get(), readingEnds_, name_);
}

} // namespace vesk
