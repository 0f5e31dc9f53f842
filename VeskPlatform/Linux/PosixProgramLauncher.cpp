#include "VeskPlatform/Linux/PosixProgramLauncher.hpp"

#include "VeskPlatform/Linux/PosixRunningProgram.hpp"
#include "VeskPlatform/Linux/ProgramSpawn.hpp"
#include "VeskPlatform/Portable/LaunchWords.hpp"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace vesk {
namespace {

constexpr int mostLargePipes = 16, largePipe = 1 << 20;

Pipe pipeFor(const ProgramLaunch& launch) {
    std::optional<Pipe> pipe = makePipe();
    if (!pipe) throw PosixError(errno, launch.executable);
    return std::move(*pipe);
}

/// None where the launch names none. Opened for its name only, which needs no right to list it.
FileDescriptor openedFolder(const ProgramLaunch& launch) {
    if (!launch.workingDirectory) return {};
    FileDescriptor folder(::open(launch.workingDirectory->c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder) throw PosixError(errno, *launch.workingDirectory);
    // Below the streams' numbers it would be gone before the program enters it.
    if (folder.get() <= STDERR_FILENO) folder.reset(::fcntl(folder.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!folder) throw PosixError(errno, *launch.workingDirectory);
    return folder;
}

/// The path that a failed start is about: a folder that may not be entered fails as the program would.
const std::string& refusedPath(const ProgramLaunch& launch, const FileDescriptor& folder) {
    const bool canEnter = !folder || ::faccessat(folder.get(), ".", X_OK, AT_EACCESS) == 0;
    return canEnter ? launch.executable : *launch.workingDirectory;
}

/// As it is named from the folder of this process, which is not the program's.
std::string programPath(const ProgramLaunch& launch) {
    const std::string& path = launch.executable;
    if (path.empty() || path.starts_with('/') || !launch.workingDirectory) return path;
    const std::unique_ptr<char, decltype(&std::free)> current(::getcwd(nullptr, 0), &std::free);
    if (!current) throw PosixError(errno, path);
    return std::string(current.get()) + "/" + path;
}

std::vector<std::string> programArguments(const ProgramLaunch& launch) {
    std::vector<std::string> arguments{launch.executable};
    arguments.insert(arguments.end(), launch.arguments.begin(), launch.arguments.end());
    return arguments;
}

/// What this process has, with the launch's own in place of those of the same names.
std::vector<std::string> programVariables(const ProgramLaunch& launch) {
    std::vector<std::string> variables;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view variable = *entry;
        if (!launch.variables.contains(std::string(variable.substr(0, variable.find('=')))))
            variables.emplace_back(variable);
    }
    for (const auto& [name, value] : launch.variables) variables.push_back(std::string(name).append("=").append(value));
    return variables;
}

/// Counts one large pipe until it is dropped.
std::shared_ptr<void> largePipeRoom(const std::shared_ptr<std::atomic<int>>& count) {
    if (count->fetch_add(1) >= mostLargePipes) {
        count->fetch_sub(1);
        return nullptr;
    }
    return {count.get(), [count](void*) { count->fetch_sub(1); }};
}

pid_t start(const ProgramLaunch& launch, const FileDescriptor& input, const ProgramStreams& streams) {
    const FileDescriptor folder = openedFolder(launch);
    ProgramSpawn spawn;
    if (folder) spawn.enterFolder(folder.get());
    if (input) spawn.useDescriptor(STDIN_FILENO, input.get());
    spawn.useDescriptor(STDOUT_FILENO, streams.output.writing.get());
    spawn.useDescriptor(STDERR_FILENO, streams.errors.writing.get());
    const auto arguments = programArguments(launch), variables = programVariables(launch);
    pid_t child = -1;
    const int failure =
        spawn.start(child, programPath(launch), argumentPointers(arguments), argumentPointers(variables).data());
    if (failure != 0) throw PosixError(failure, refusedPath(launch, folder));
    return child;
}

} // namespace

std::unique_ptr<RunningProgram> PosixProgramLauncher::launch(const ProgramLaunch& launch) {
    checkWords(launch);
    Pipe input;
    if (launch.takesInput) input = pipeFor(launch);
    ProgramStreams streams{std::move(input.writing), pipeFor(launch), pipeFor(launch), largePipeRoom(largePipes_)};
    if (streams.room) (void)::fcntl(streams.output.writing.get(), F_SETPIPE_SZ, largePipe);
    // Keeps a number free for the handle on the child, so that a want of them is known before the program runs.
    FileDescriptor reserved(::fcntl(streams.output.reading.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!reserved) throw PosixError(errno, launch.executable);
    const pid_t number = start(launch, input.reading, streams);
    reserved.reset();
    StartedChild child(number, launch.executable);
    return std::make_unique<PosixRunningProgram>(std::move(child), std::move(streams), launch.executable, stallLimit_);
}

} // namespace vesk
