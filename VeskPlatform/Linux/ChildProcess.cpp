#include "VeskPlatform/Linux/ChildProcess.hpp"

#include "VeskPlatform/Linux/Pipe.hpp"
#include "VeskPlatform/Linux/ProgramSpawn.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <linux/close_range.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vesk {

/// Numbers that are the C library's own or cannot be changed fail.
void resetSignals() {
    struct sigaction ordinary {};
    ordinary.sa_handler = SIG_DFL;
    for (int signal = 1; signal < NSIG; ++signal) (void)::sigaction(signal, &ordinary, nullptr);
    sigset_t none;
    ::sigemptyset(&none);
    (void)::sigprocmask(SIG_SETMASK, &none, nullptr);
}

namespace {

constexpr std::size_t largestOutput = 1 << 20;

int waitFor(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0)
        if (errno != EINTR) return -1; // reaped elsewhere
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

/// Reads one block; closes the end where there is nothing more.
void readSome(FileDescriptor& from, std::string& into) {
    std::array<char, 4096> block{};
    const ssize_t count = ::read(from.get(), block.data(), block.size());
    if (count > 0 && into.size() < largestOutput)
        into.append(block.data(), static_cast<std::size_t>(count));
    else if (count == 0 || (count < 0 && errno != EINTR))
        from.reset();
}

void readBoth(FileDescriptor& output, FileDescriptor& errors, ProgramResult& result) {
    while (output || errors) {
        std::array<pollfd, 2> ends{{{output.get(), POLLIN, 0}, {errors.get(), POLLIN, 0}}};
        if (::poll(ends.data(), ends.size(), -1) < 0) continue; // interrupted
        if (ends[0].revents != 0) readSome(output, result.output);
        if (ends[1].revents != 0) readSome(errors, result.errors);
    }
}

/// Where a program writes; -1 is nowhere.
struct Streams {
    int output = -1, errors = -1;
};

void useStream(ProgramSpawn& spawn, int stream, int target) {
    if (target < 0)
        spawn.useNull(stream, O_WRONLY);
    else
        spawn.useDescriptor(stream, target);
}

pid_t start(const std::vector<std::string>& arguments, const Streams& streams) {
    ProgramSpawn spawn;
    spawn.useNull(STDIN_FILENO, O_RDONLY);
    useStream(spawn, STDOUT_FILENO, streams.output);
    useStream(spawn, STDERR_FILENO, streams.errors);
    // A program that leaves others behind gives them its session.
    if (streams.output < 0) spawn.makeSession();
    pid_t child = -1;
    return spawn.start(child, arguments[0], argumentPointers(arguments), environ) == 0 ? child : -1;
}

/// The grandchild's part of a detached start: only calls that are safe after a fork. Tells `report` that it failed.
[[noreturn]] void becomeProgram(char* const* arguments, int report) {
    const int null = ::open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(null, stream);
    ::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    resetSignals();
    ::execv(arguments[0], arguments);
    const char failed = 1;
    (void)!::write(report, &failed, 1);
    ::_exit(127);
}

} // namespace

std::optional<std::string> installedProgram(const std::string& name, const std::vector<std::string>& folders) {
    for (const std::string& folder : folders)
        if (std::string path = folder + "/" + name; ::access(path.c_str(), X_OK) == 0) return path;
    return std::nullopt;
}

std::optional<ProgramResult> runProgram(const std::vector<std::string>& arguments) {
    auto output = makePipe(), errors = makePipe();
    if (!output || !errors) return std::nullopt;
    const pid_t child = start(arguments, {output->writing.get(), errors->writing.get()});
    if (child < 0) return std::nullopt;
    output->writing.reset();
    errors->writing.reset();
    ProgramResult result;
    readBoth(output->reading, errors->reading, result);
    result.status = waitFor(child);
    return result;
}

std::optional<int> runQuietly(const std::vector<std::string>& arguments) {
    const pid_t child = start(arguments, {});
    return child < 0 ? std::nullopt : std::optional(waitFor(child));
}

bool startDetached(const std::vector<std::string>& arguments) {
    auto report = makePipe();
    if (!report) return false;
    const auto pointers = argumentPointers(arguments);
    keepStatusOfChildren();
    const pid_t child = ::fork();
    if (child < 0) return false;
    if (child == 0) {
        ::setsid();
        const pid_t grandchild = ::fork();
        if (grandchild == 0) becomeProgram(pointers.data(), report->writing.get());
        ::_exit(grandchild < 0 ? 1 : 0);
    }
    report->writing.reset();
    const bool forked = waitFor(child) == 0;
    std::string failure; // one byte of a failed start, or the end that a successful one closes
    while (report->reading) readSome(report->reading, failure);
    return forked && failure.empty();
}

} // namespace vesk
