#include "tests/support/ProgramRun.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace vesk::test {
namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void fail(int error, const std::string& what) {
    throw std::system_error(error, std::generic_category(), what);
}

/// An open descriptor, closed with its owner.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {
        if (number < 0) fail(errno, "descriptor");
    }
    ~Descriptor() { reset(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return number_; }
    void reset() {
        if (number_ >= 0) ::close(number_);
        number_ = -1;
    }

private:
    int number_;
};

struct Pipe {
    explicit Pipe(std::array<int, 2> ends) : reader(ends[0]), writer(ends[1]) {}
    static std::array<int, 2> ends() {
        std::array<int, 2> result{-1, -1};
        if (::pipe2(result.data(), O_CLOEXEC) != 0) fail(errno, "pipe2");
        ::fcntl(result[0], F_SETFL, O_NONBLOCK);
        return result;
    }
    Descriptor reader, writer;
};

int inputFile(const std::string& text) {
    const int file = ::memfd_create("input", MFD_CLOEXEC);
    if (file < 0) fail(errno, "memfd_create");
    if (::write(file, text.data(), text.size()) != static_cast<ssize_t>(text.size())) fail(errno, "input");
    ::lseek(file, 0, SEEK_SET);
    return file;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (std::string& text : texts) result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

pid_t start(std::vector<std::string> command, std::vector<std::string> variables, const std::string& folder,
            const std::array<int, 3>& streams) {
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_init(&attributes);
    for (int i = 0; i < 3; ++i) posix_spawn_file_actions_adddup2(&actions, streams[static_cast<std::size_t>(i)], i);
    posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    pid_t child = -1;
    const int error = ::posix_spawn(&child, command[0].c_str(), &actions, &attributes, pointers(command).data(),
                                    pointers(variables).data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) fail(error, command[0]);
    return child;
}

/// Takes what is there; false at the end of the stream.
bool take(const Descriptor& reader, std::string& text) {
    std::array<char, 65536> buffer;
    for (;;) {
        const ssize_t got = ::read(reader.get(), buffer.data(), buffer.size());
        if (got == 0) return false;
        if (got < 0) return errno == EAGAIN || errno == EINTR;
        text.append(buffer.data(), static_cast<std::size_t>(got));
    }
}

int statusOf(int wait) { return WIFEXITED(wait) ? WEXITSTATUS(wait) : 128 + WTERMSIG(wait); }

/// Collects both outputs until the child has ended; false past the deadline. What it left running may hold the pipes
/// open, so their ends are not waited for.
bool collect(const Descriptor& child, const Descriptor& output, const Descriptor& errorOutput, ProgramResult& result,
             Clock::time_point deadline) {
    std::array<pollfd, 3> waiting{pollfd{child.get(), POLLIN, 0}, pollfd{output.get(), POLLIN, 0},
                                  pollfd{errorOutput.get(), POLLIN, 0}};
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) return false;
        if (::poll(waiting.data(), waiting.size(), static_cast<int>(left)) < 0 && errno != EINTR) fail(errno, "poll");
        if (waiting[1].revents != 0 && !take(output, result.output)) waiting[1].fd = -1;
        if (waiting[2].revents != 0 && !take(errorOutput, result.errorOutput)) waiting[2].fd = -1;
        if (waiting[0].revents == 0) continue;
        take(output, result.output);
        take(errorOutput, result.errorOutput);
        return true;
    }
}

std::filesystem::path freshFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "vesk-run-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) fail(errno, pattern);
    return pattern;
}

} // namespace

ProgramRun::ProgramRun(std::filesystem::path program) : program_(std::move(program)), folder_(freshFolder()) {
    environment = {{"HOME", folder_.string()},
                   {"PATH", "/usr/bin:/bin"},
                   {"LC_ALL", "C.UTF-8"},
                   {"TZ", "UTC"},
                   {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + (folder_ / "no-bus").string()}};
}

ProgramRun::~ProgramRun() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

ProgramResult ProgramRun::run(const std::vector<std::string>& arguments) const {
    ProgramResult result;
    result.command = launcher;
    result.command.push_back(program_.string());
    result.command.insert(result.command.end(), arguments.begin(), arguments.end());
    result.folder = folder_;
    std::vector<std::string> variables;
    for (const auto& [name, value] : environment) variables.push_back(name + "=" + value);

    const Descriptor in(inputFile(input));
    Pipe output(Pipe::ends()), errorOutput(Pipe::ends());
    const auto end = Clock::now() + deadline;
    const pid_t child = start(result.command, std::move(variables), folder_.string(),
                              {in.get(), output.writer.get(), errorOutput.writer.get()});
    output.writer.reset();
    errorOutput.writer.reset();
    const Descriptor handle(static_cast<int>(::syscall(SYS_pidfd_open, child, 0)));
    const bool ended = collect(handle, output.reader, errorOutput.reader, result, end);
    if (!ended) ::kill(-child, SIGKILL);
    int wait = 0;
    while (::waitpid(child, &wait, 0) < 0 && errno == EINTR) {
    }
    if (ended) result.status = statusOf(wait);
    return result;
}

std::ostream& operator<<(std::ostream& stream, const ProgramResult& result) {
    stream << "\ncommand:";
    for (const std::string& word : result.command) stream << " [" << word << "]";
    stream << "\nfolder: " << result.folder.string() << "\nstatus: ";
    if (result.status < 0)
        stream << "none, it was killed at its deadline";
    else
        stream << result.status;
    return stream << "\nstandard output:\n" << result.output << "\nstandard error:\n" << result.errorOutput;
}

} // namespace vesk::test
