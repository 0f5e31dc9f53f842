#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesk {

/// A program to start, and what it is started with.
struct ProgramLaunch {
    /// Absolute, or relative to the working directory of this process; never looked for in a search path. It is also
    /// the program's own name, its argument 0.
    std::string executable;
    /// Without the program's own name.
    std::vector<std::string> arguments{};
    /// None: that of this process.
    std::optional<std::string> workingDirectory{};
    /// Set over what this process has in its environment. A name is not empty and has no "=" in it.
    std::map<std::string, std::string> variables{};
    /// Whether the program reads what `writeInput` gives; else it has the standard input of this process.
    bool takesInput = false;
};

/// A started program that wrote, or would not read, more than its pipe holds while nobody emptied it, until the guard's
/// time was up and the program was ended. Domain "VeskProcess", code 1.
class ProgramStalled : public ErrorRecord {
public:
    explicit ProgramStalled(const std::string& description) : ErrorRecord("VeskProcess", 1, description) {}
};

/// A program that was started. Its standard output and standard error are pipes, which nobody reads until they are
/// asked for. One thread uses it; each verb blocks that thread and is called once, in the order in which they stand.
class RunningProgram {
public:
    /// Leaves nothing behind: a program that was not waited for is ended.
    virtual ~RunningProgram() = default;
    /// Writes all of it and closes the program's standard input. A program that closes it early, or ends without having
    /// read it, is no failure: its exit tells. Left out where the launch takes no input; where it takes some and this
    /// is left out, the program finds its input empty. Throws ProgramStalled, and PosixError.
    virtual void writeInput(std::string_view bytes) = 0;
    /// The exit status, or 128 and the number of the signal that ended it. There is no limit of time but for a pipe
    /// that is full: then throws ProgramStalled, with the program ended, and no further verb is called.
    virtual std::int32_t waitUntilExit() = 0;
    /// All of its standard output. What the program left running may still hold the pipe open: it is read on for the
    /// guard's time after the program's end and up to 64 MiB, and what came is all.
    virtual std::string readOutputToEnd() = 0;
    /// The same for standard error.
    virtual std::string readErrorsToEnd() = 0;
};

/// Starts programs. Safe from any thread.
class ProgramLauncher {
public:
    virtual ~ProgramLauncher() = default;
    /// Throws PosixError for a program that cannot be started, before anything runs: with the path of the executable,
    /// or of a working directory that cannot be entered; EINVAL for a text with a null character in it. The program
    /// inherits the three standard streams but those that are pipes, and no other descriptor; signals are at their
    /// defaults. What it was started with may go as soon as this returns.
    virtual std::unique_ptr<RunningProgram> launch(const ProgramLaunch& launch) = 0;
};

} // namespace vesk
