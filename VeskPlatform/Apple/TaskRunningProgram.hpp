#pragma once

#import <Foundation/Foundation.h>

#include "VeskPlatform/ProgramLauncher.hpp"

#include <chrono>
#include <optional>
#include <string>

NS_ASSUME_NONNULL_BEGIN

namespace vesk {

/// This process's ends of a program's streams. Those that the program writes to are kept until it has ended, since only
/// a writing end tells that a pipe is full.
struct TaskStreams {
    /// Nil where the program takes no input; the reading one also once it was started.
    NSFileHandle* _Nullable inputReading = nil;
    NSFileHandle* _Nullable input = nil;
    NSPipe* _Nullable output = nil;
    NSPipe* _Nullable errors = nil;
};

/// A started task and its pipes.
class TaskRunningProgram : public RunningProgram {
public:
    /// `ended` is signalled once, when the task has ended; `name` is the program's path; `stallLimit` is the guard's
    /// time.
    TaskRunningProgram(NSTask* task, dispatch_semaphore_t ended, TaskStreams streams, std::string name,
                       std::chrono::milliseconds stallLimit);
    ~TaskRunningProgram() override;
    TaskRunningProgram(const TaskRunningProgram&) = delete;
    TaskRunningProgram& operator=(const TaskRunningProgram&) = delete;

    void writeInput(std::string_view bytes) override;
    std::int32_t waitUntilExit() override;
    std::string readOutputToEnd() override;
    std::string readErrorsToEnd() override;

private:
    bool hasEndedWithin(std::chrono::milliseconds time);
    bool hasRoom(int input);
    std::optional<std::string> fullStream() const;
    [[noreturn]] void stop(const std::string& why);
    void end();
    void closeInput();
    std::string readToEnd(NSFileHandle* _Nullable stream) const;

    NSTask* task_;
    dispatch_semaphore_t signal_;
    bool ended_ = false;
    TaskStreams streams_;
    std::string name_;
    std::chrono::milliseconds stallLimit_;
    /// When what the program left running has had its time.
    std::chrono::steady_clock::time_point readingEnds_{};
};

} // namespace vesk

NS_ASSUME_NONNULL_END
