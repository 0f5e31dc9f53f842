#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskPlatform/ProgramLauncher.hpp"
#include "VeskShellCore/ShellDebugLogger.hpp"
#include "VeskSupport/DetachedWork.hpp"
#include "VeskSupport/Records.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace vesk {

/// A command-line tool to run that answers with one JSON document, and how its run is told in the log.
struct CommandRun {
    /// The area of its log lines, such as "shell-client".
    std::string area;
    ProgramLaunch launch;
    /// What goes to its standard input and never to the log; `launch.takesInput` says that there is any.
    std::string input;
    /// What its lines of start and failure tell before the arguments: empty, or words that end in a blank.
    std::string subject;
    /// What its line of start tells after them: empty, or words that begin with a blank.
    std::string surroundings;
};

/// What running a command needs; all of it is safe from any thread.
struct CommandPorts {
    ProgramLauncher& launcher;
    MonotonicClock& clock;
    ShellDebugLogger::Ports log;
};

/// Called on the main executor, as every accessor of the platform.
CommandPorts commandPortsOf(Platform& platform);

/// Starts the command, feeds it, waits for its end and only then reads what it wrote, which `decode` takes in;
/// blocking. Throws PosixError where it cannot be started, VeskShellError `processFailed` for any status but 0 and
/// `invalidResponse` where decoding fails, and ProgramStalled.
void runCommand(const CommandPorts& ports, const CommandRun& run,
                const std::function<void(std::string_view output)>& decode);

/// The same on a thread of its own, decoding a record.
template <Record R> Task<R> runJson(Platform& platform, CommandRun run) {
    const std::function<R()> work = [ports = commandPortsOf(platform), run = std::move(run)] {
        std::optional<R> record;
        runCommand(ports, run, [&record](std::string_view output) { record = fromJson<R>(parseJson(output)); });
        return *std::move(record);
    };
    return onThreadOfItsOwn<R>(work);
}

} // namespace vesk
