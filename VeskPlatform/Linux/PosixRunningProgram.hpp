#pragma once

#include "VeskPlatform/Linux/Pipe.hpp"
#include "VeskPlatform/Linux/StartedChild.hpp"
#include "VeskPlatform/ProgramLauncher.hpp"

#include <chrono>
#include <memory>
#include <optional>

namespace vesk {

/// This process's ends of a program's streams. Those that the program writes to are kept until it has ended, since only
/// a writing end tells that a pipe is full.
struct ProgramStreams {
    FileDescriptor input;
    Pipe output, errors;
    /// What gives back the room that a larger pipe takes, when the program is done with.
    std::shared_ptr<void> room;
};

/// A child and its pipes.
class PosixRunningProgram : public RunningProgram {
public:
    /// `name` is the program's path; `stallLimit` is the guard's time.
    PosixRunningProgram(StartedChild child, ProgramStreams streams, std::string name,
                        std::chrono::milliseconds stallLimit);

    void writeInput(std::string_view bytes) override;
    std::int32_t waitUntilExit() override;
    std::string readOutputToEnd() override { return readToEnd(std::move(streams_.output.reading)); }
    std::string readErrorsToEnd() override { return readToEnd(std::move(streams_.errors.reading)); }

private:
    bool hasRoom(const FileDescriptor& input);
    std::optional<std::string> fullStream() const;
    [[noreturn]] void stop(const std::string& why);
    std::string readToEnd(FileDescriptor stream) const;

    StartedChild child_;
    ProgramStreams streams_;
    std::string name_;
    std::chrono::milliseconds stallLimit_;
    /// When what the program left running has had its time.
    std::chrono::steady_clock::time_point readingEnds_{};
};

} // namespace vesk
