#include "VeskPlatform/Linux/Chromium/EngineProcess.hpp"

#include "VeskPlatform/Linux/ChildProcess.hpp"
#include "VeskPlatform/Linux/Chromium/WebEngineError.hpp"
#include "VeskPlatform/Linux/Pipe.hpp"
#include "VeskPlatform/Linux/ProgramSpawn.hpp"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <linux/close_range.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vesk {
namespace {

constexpr int firstPipe = 3, secondPipe = 4;

[[noreturn]] void failToStart(int failure) {
    throw WebEngineError(WebEngineError::Kind::notStarted,
                         std::string("The browser engine could not be started: ") + std::strerror(failure) + ".");
}

Pipe makeEnginePipe() {
    std::optional<Pipe> pipe = makePipe();
    if (!pipe) failToStart(errno);
    return std::move(*pipe);
}

/// What the child needs, made before the fork: after it only calls that are safe then.
struct Start {
    const char* path;
    char* const* arguments;
    char* const* environment;
    const EngineUser* user;
    int commands, answers, log, report;
    pid_t parent;
};

bool becomeUser(const EngineUser& user) {
    return ::setgroups(0, nullptr) == 0 && ::setresgid(user.groupId, user.groupId, user.groupId) == 0
           && ::setresuid(user.userId, user.userId, user.userId) == 0;
}

bool arrangeStreams(const Start& start) {
    // The ends may lie where they belong in another order: first out of the way, then into place.
    const int commands = ::fcntl(start.commands, F_DUPFD, 10), answers = ::fcntl(start.answers, F_DUPFD, 10);
    const int log = ::fcntl(start.log, F_DUPFD, 10), null = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    return ::dup2(null, STDIN_FILENO) >= 0 && ::dup2(log, STDOUT_FILENO) >= 0 && ::dup2(log, STDERR_FILENO) >= 0
           && ::dup2(commands, firstPipe) >= 0 && ::dup2(answers, secondPipe) >= 0
           && ::close_range(secondPipe + 1, ~0U, CLOSE_RANGE_CLOEXEC) == 0;
}

[[noreturn]] void becomeEngine(const Start& start) {
    ::setpgid(0, 0);
    resetSignals();
    const int report = ::fcntl(start.report, F_DUPFD_CLOEXEC, 20);
    const bool arranged = arrangeStreams(start) && (start.user == nullptr || becomeUser(*start.user));
    // A change of the user would forget it. The parent may have gone before.
    if (arranged && ::prctl(PR_SET_PDEATHSIG, SIGKILL) == 0 && ::getppid() == start.parent)
        ::execve(start.path, start.arguments, start.environment);
    const int failure = errno;
    (void)!::write(report, &failure, sizeof failure);
    ::_exit(127);
}

/// The error number of a failed start, or 0 from the end that a successful one closes.
int reportedFailure(const FileDescriptor& report) {
    int failure = 0;
    ssize_t count = -1;
    do {
        count = ::read(report.get(), &failure, sizeof failure);
    } while (count < 0 && errno == EINTR);
    return count == sizeof failure ? failure : 0;
}

/// Reaps the whole group. Members whose parents are gone have become this process's children.
void waitUntilGone(pid_t group) {
    while (::waitpid(-group, nullptr, 0) >= 0 || errno == EINTR) {
    }
}

} // namespace

EngineProcess::EngineProcess(const EngineProgram& program, const std::string& logPath) {
    Pipe toEngine = makeEnginePipe(), fromEngine = makeEnginePipe(), report = makeEnginePipe();
    const FileDescriptor log(::open(logPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    if (!log) failToStart(errno);
    keepStatusOfChildren();
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    const auto arguments = argumentPointers(program.arguments), environment = argumentPointers(program.environment);
    const Start start{program.path.c_str(),
                      arguments.data(),
                      environment.data(),
                      program.user ? &*program.user : nullptr,
                      toEngine.reading.get(),
                      fromEngine.writing.get(),
                      log.get(),
                      report.writing.get(),
                      ::getpid()};
    group_ = ::fork();
    if (group_ < 0) failToStart(errno);
    if (group_ == 0) becomeEngine(start);
    ::setpgid(group_, group_); // whichever of the two comes first
    report.writing.reset();
    if (const int failure = reportedFailure(report.reading); failure != 0) {
        ::waitpid(group_, nullptr, 0);
        failToStart(failure);
    }
    commands = std::move(toEngine.writing);
    answers = std::move(fromEngine.reading);
}

EngineProcess::~EngineProcess() {
    ::kill(-group_, SIGKILL);
    waitUntilGone(group_);
}

} // namespace vesk
