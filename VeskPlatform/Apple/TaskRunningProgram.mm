#import "VeskPlatform/Apple/TaskRunningProgram.hpp"

#include "VeskPlatform/Portable/GuardedPipe.hpp"
#include "VeskSupport/FilePath.hpp"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <utility>

namespace vesk {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::steady_clock;

/// How often it is looked whether the program has ended while its input is full.
constexpr milliseconds inputInterval{50};

bool isFull(NSPipe* _Nullable pipe) { return vesk::isFull(pipe.fileHandleForWriting.fileDescriptor); }

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
    writeWhileRead(
        input, bytes, [&] { return hasRoom(input); }, name_);
}

/// Waits for it. False where the program has ended instead: something that it left running may hold the pipe for ever.
bool TaskRunningProgram::hasRoom(int input) {
    const auto deadline = steady_clock::now() + stallLimit_;
    std::array<pollfd, 1> end{{{input, POLLOUT, 0}}};
    while (steady_clock::now() < deadline) {
        if (waitForAny(end, std::min(inputInterval, stallLimit_))) return true;
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
    std::string bytes = readUntil(stream.fileDescriptor, readingEnds_, name_);
    [stream closeAndReturnError:nil];
    return bytes;
}

} // namespace vesk
