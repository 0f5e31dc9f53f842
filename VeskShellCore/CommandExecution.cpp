#include "VeskShellCore/CommandExecution.hpp"

#include "VeskPlatform/MonotonicClock.hpp"
#include "VeskShellCore/VeskShellError.hpp"
#include "VeskSupport/FilePath.hpp"
#include "VeskSupport/Text.hpp"

#include <chrono>
#include <cstdint>

namespace vesk {
namespace {

struct CommandResult {
    std::int32_t status = 0;
    std::string output, errors;
    std::int64_t durationMs = 0;
};

std::int64_t wholeMilliseconds(std::chrono::nanoseconds duration) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(duration).count();
}

/// The order is what callers know: input first and whole, then the end, then output, then errors. The time of the
/// launch itself does not count.
CommandResult execute(const CommandPorts& ports, const CommandRun& run) {
    const auto program = ports.launcher.launch(run.launch);
    const std::chrono::nanoseconds start = ports.clock.now();
    if (run.launch.takesInput) program->writeInput(run.input);
    CommandResult result;
    result.status = program->waitUntilExit();
    result.output = program->readOutputToEnd();
    result.errors = program->readErrorsToEnd();
    result.durationMs = wholeMilliseconds(ports.clock.now() - start);
    return result;
}

std::string commandLine(const std::string& program, const CommandRun& run) {
    std::string line = program;
    for (const std::string& argument : run.launch.arguments) line.append(" ").append(argument);
    return line;
}

std::string argumentsOf(const CommandRun& run) { return joined(run.launch.arguments, " "); }

std::string measures(const CommandResult& result) {
    return " durationMs=" + std::to_string(result.durationMs) + " stdoutBytes=" + std::to_string(result.output.size())
           + " stderrBytes=" + std::to_string(result.errors.size());
}

std::string previews(const CommandResult& result) {
    constexpr std::size_t limit = 400;
    return " stdoutPreview=" + ShellDebugLogger::preview(result.output, limit)
           + " stderrPreview=" + ShellDebugLogger::preview(result.errors, limit);
}

[[noreturn]] void failProcess(const CommandPorts& ports, const CommandRun& run, const CommandResult& result) {
    ShellDebugLogger::log(ports.log, [&] {
        return run.area + " command=process_failed " + run.subject + "args=" + argumentsOf(run)
               + " status=" + std::to_string(result.status) + measures(result) + previews(result);
    });
    const std::string_view errors = isWellFormedUtf8(result.errors) ? result.errors : std::string_view();
    throw VeskShellError::processFailed(commandLine(run.launch.executable, run), result.status,
                                        std::string(trimmed(errors)));
}

[[noreturn]] void failDecoding(const CommandPorts& ports, const CommandRun& run, const std::string& label,
                               const CommandResult& result, const std::string& description) {
    ShellDebugLogger::log(ports.log, [&] {
        return run.area + " command=decode_failed label=" + label + measures(result) + previews(result)
               + " error=" + description;
    });
    throw VeskShellError::invalidResponse("Unable to decode CLI response: " + description);
}

} // namespace

CommandPorts commandPortsOf(Platform& platform) {
    return {.launcher = platform.programLauncher(),
            .clock = platform.monotonicClock(),
            .log = ShellDebugLogger::portsOf(platform)};
}

void runCommand(const CommandPorts& ports, const CommandRun& run,
                const std::function<void(std::string_view output)>& decode) {
    const std::string label = commandLine(lastPathComponent(run.launch.executable), run);
    ShellDebugLogger::log(ports.log, [&] {
        return run.area + " command=start " + run.subject + "args=" + argumentsOf(run) + run.surroundings;
    });
    const CommandResult result = execute(ports, run);
    if (result.status != 0) failProcess(ports, run, result);
    try {
        decode(result.output);
    } catch (const ErrorRecord& error) {
        failDecoding(ports, run, label, result, error.description());
    }
    ShellDebugLogger::log(ports.log, [&] { return run.area + " command=ok label=" + label + measures(result); });
}

} // namespace vesk
