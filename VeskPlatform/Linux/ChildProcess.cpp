#include "VeskPlatform/Linux/ChildProcess.hpp"

#include "VeskPlatform/Linux/FileDescriptor.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <linux/close_range.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vesk {

std::vector<char*> argumentPointers(const std::vector<std::string>& arguments) {
    std::vector<char*> pointers;
    for (const std::string& argument : arguments) pointers.push_back(const_cast<char*>(argument.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

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

struct Pipe {
    FileDescriptor reading, writing;
};

std::optional<Pipe> makePipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return std::nullopt;
    return Pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

/// Whoever started this process may have left SIGCHLD ignored to it, and the kernel then keeps no status of children.
void keepStatusOfChildren() {
    struct sigaction current {};
    if (::sigaction(SIGCHLD, nullptr, &current) == 0 && current.sa_handler == SIG_IGN) std::signal(SIGCHLD, SIG_DFL);
}

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

void addStream(posix_spawn_file_actions_t& actions, int stream, int target) {
    if (target < 0)
        ::posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_WRONLY, 0);
    else
        ::posix_spawn_file_actions_adddup2(&actions, target, stream);
}

/// A program begins with every signal at its default and none blocked: this process ignores SIGPIPE, its threads may
/// block others, and both would be inherited.
pid_t spawn(const std::vector<std::string>& arguments, const Streams& streams) {
    sigset_t all, none;
    ::sigfillset(&all);
    ::sigemptyset(&none);
    // A program that leaves others behind gives them a session that no terminal of this one ends.
    const bool isQuiet = streams.output < 0;
    const auto flags =
        static_cast<short>(POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | (isQuiet ? POSIX_SPAWN_SETSID : 0));
    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    ::posix_spawnattr_setsigdefault(&attributes, &all);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setflags(&attributes, flags);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    addStream(actions, STDOUT_FILENO, streams.output);
    addStream(actions, STDERR_FILENO, streams.errors);
    ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    pid_t child = -1;
    const int failure =
        ::posix_spawn(&child, arguments[0].c_str(), &actions, &attributes, argumentPointers(arguments).data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    ::posix_spawnattr_destroy(&attributes);
    return failure == 0 ? child : -1;
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
    keepStatusOfChildren();
    const pid_t child = spawn(arguments, {output->writing.get(), errors->writing.get()});
    if (child < 0) return std::nullopt;
    output->writing.reset();
    errors->writing.reset();
    ProgramResult result;
    readBoth(output->reading, errors->reading, result);
    result.status = waitFor(child);
    return result;
}

std::optional<int> runQuietly(const std::vector<std::string>& arguments) {
    keepStatusOfChildren();
    const pid_t child = spawn(arguments, {});
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
