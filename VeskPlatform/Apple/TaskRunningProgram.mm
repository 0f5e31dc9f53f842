#import "VeskPlatform/Apple/TaskRunningProgram.hpp"

#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/FilePath.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace vesk {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::steady_clock;

/// What a program left running may write for ever, and faster than it can be read. No program's own output is this
/// long.
constexpr std::size_t mostBytes = std::size_t{64} << 20;

/// How often it is looked whether the program has ended while its input is full.
constexpr milliseconds inputInterval{50};

milliseconds timeUntil(steady_clock::time_point time) {
    return std::chrono::ceil<milliseconds>(time - steady_clock::now());
}

/// Waits until it can be read or written, however often a signal interrupts it; false where it cannot in time.
bool isReadyWithin(int descriptor, short events, milliseconds limit) {
    const auto deadline = steady_clock::now() + limit;
    for (;;) {
        pollfd end{.fd = descriptor, .events = events, .revents = 0};
        const milliseconds left = std::max(timeUntil(deadline), milliseconds(0));
        const int ready = ::poll(&end, 1, static_cast<int>(left.count()));
        if (ready > 0) return true;
        if (ready == 0) return false;
    }
}

bool isFull(NSPipe* _Nullable pipe) {
    return !isReadyWithin(pipe.fileHandleForWriting.fileDescriptor, POLLOUT, milliseconds(0));
}

std::int32_t statusOf(NSTask* task) {
    constexpr int signalBase = 128;
    const bool wasSignal = task.terminationReason == NSTaskTerminationReasonUncaughtSignal;
    return task.terminationStatus + (wasSignal ? signalBase : 0);
}

} // namespace

TaskRunningProgram::TaskRunningProgram(NSTask* task, dispatch_semaphore_t ended, TaskStreams streams, std::string name,
                                       milliseconds stallLimit)
    : task_(task), signal_(ended), streams_(streams), name_(std::move(name)), stallLimit_(stallLimit) {}

TaskRunningProgram::~TaskRunningProgram() { end(); }

bool TaskRunningProgram::hasEndedWithin(milliseconds time) {
    const dispatch_time_t limit = dispatch_time(DISPATCH_TIME_NOW, nanoseconds(time).count());
    if (!ended_) ended_ = dispatch_semaphore_wait(signal_, limit) == 0;
    return ended_;
}

/// A number is not given to another process before the task has taken the status of its own.
void TaskRunningProgram::end() {
    if (hasEndedWithin(milliseconds(0))) return;
    if (task_.running) ::kill(task_.processIdentifier, SIGKILL);
    ended_ = dispatch_semaphore_wait(signal_, DISPATCH_TIME_FOREVER) == 0;
}

std::optional<std::string> TaskRunningProgram::fullStream() const {
    if (isFull(streams_.output)) return "standard output";
    if (isFull(streams_.errors)) return "standard error";
    return std::nullopt;
}

void TaskRunningProgram::stop(const std::string& why) {
    end();
    throw ProgramStalled(lastPathComponent(name_) + " " + why + ", and was stopped.");
}

void TaskRunningProgram::closeInput() {
    [streams_.input closeAndReturnError:nil];
    streams_.input = nil;
}

void TaskRunningProgram::writeInput(std::string_view bytes) {
    if (streams_.input == nil) return;
    const struct Closing {
        TaskRunningProgram& program;
        ~Closing() { program.closeInput(); }
    } closing{*this};
    const int input = streams_.input.fileDescriptor;
    ::fcntl(input, F_SETNOSIGPIPE, 1);
    ::fcntl(input, F_SETFL, O_NONBLOCK); // of this end alone, not of the program's
    while (!bytes.empty()) {
        const ssize_t written = ::write(input, bytes.data(), bytes.size());
        if (written >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (errno == EPIPE || (errno == EAGAIN && !hasRoom(input)))
            return;
        else if (errno != EAGAIN && errno != EINTR)
            throw PosixError(errno, name_);
    }
}

/// Waits for it. False where the program has ended instead: something that it left running may hold the pipe for ever.
bool TaskRunningProgram::hasRoom(int input) {
    const auto deadline = steady_clock::now() + stallLimit_;
    while (steady_clock::now() < deadline) {
        if (isReadyWithin(input, POLLOUT, std::min(inputInterval, stallLimit_))) return true;
        if (hasEndedWithin(milliseconds(0))) return false;
    }
    if (const auto full = fullStream())
        stop("wrote more to " + *full + " than its pipe holds before it had read its input");
    stop("did not read its input");
}

std::int32_t TaskRunningProgram::waitUntilExit() {
    closeInput(); // of a program that was given none, which would wait for it
    const milliseconds interval = std::clamp(stallLimit_ / 8, milliseconds(1), milliseconds(1000));
    auto hadRoom = steady_clock::now();
    while (!hasEndedWithin(interval)) {
        const auto full = fullStream();
        if (!full)
            hadRoom = steady_clock::now();
        else if (steady_clock::now() - hadRoom >= stallLimit_ + interval) // it may have filled an interval later
            stop("wrote more to " + *full + " than its pipe holds before it ended");
    }
    // Only what the program left running can keep the pipes from their ends now.
    [streams_.output.fileHandleForWriting closeAndReturnError:nil];
    [streams_.errors.fileHandleForWriting closeAndReturnError:nil];
    readingEnds_ = steady_clock::now() + stallLimit_;
    [task_ waitUntilExit]; // which it has done; with this its status is there
    return statusOf(task_);
}

std::string TaskRunningProgram::readOutputToEnd() { return readToEnd(streams_.output.fileHandleForReading); }

std::string TaskRunningProgram::readErrorsToEnd() { return readToEnd(streams_.errors.fileHandleForReading); }

std::string TaskRunningProgram::readToEnd(NSFileHandle* _Nullable stream) const {
    const int descriptor = stream.fileDescriptor;
    std::string bytes;
    std::array<char, 65536> block; // NOLINT(cppcoreguidelines-pro-type-member-init): read fills it
    // What is there is read in any case, since the program itself may have written it.
    while (bytes.size() < mostBytes && isReadyWithin(descriptor, POLLIN, timeUntil(readingEnds_))) {
        const ssize_t count = ::read(descriptor, block.data(), block.size());
        if (count > 0)
            bytes.append(block.data(), static_cast<std::size_t>(count));
        else if (count == 0)
            break;
        else if (errno != EINTR)
            throw PosixError(errno, name_);
    }
    [stream closeAndReturnError:nil];
    return bytes;
}

} // namespace vesk
