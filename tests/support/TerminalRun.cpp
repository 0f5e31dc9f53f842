#include "tests/support/TerminalRun.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <poll.h>
#include <pty.h>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace vesk::test {

namespace {

using std::chrono::steady_clock;
constexpr std::chrono::seconds patience{10};

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

TerminalRun::TerminalRun(std::vector<std::string> arguments, std::map<std::string, std::string> environment) {
    std::vector<std::string> variables;
    for (const auto& [name, value] : environment) variables.push_back(name + "=" + value);
    const auto argumentPointers = pointersTo(arguments), variablePointers = pointersTo(variables);
    child_ = ::forkpty(&terminal_, nullptr, nullptr, nullptr);
    if (child_ < 0) throw std::system_error(errno, std::generic_category(), "forkpty");
    if (child_ > 0) return;
    ::execve(argumentPointers[0], argumentPointers.data(), variablePointers.data());
    ::_exit(127);
}

TerminalRun::~TerminalRun() {
    if (child_ > 0) {
        ::kill(child_, SIGKILL);
        ::waitpid(child_, nullptr, 0);
    }
    hangUp();
}

void TerminalRun::hangUp() {
    if (terminal_ >= 0) ::close(terminal_);
    terminal_ = -1;
}

bool TerminalRun::readMore(steady_clock::time_point deadline) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - steady_clock::now());
    pollfd wait{terminal_, POLLIN, 0};
    if (left.count() <= 0 || ::poll(&wait, 1, static_cast<int>(left.count())) == 0)
        throw std::runtime_error("Waited in vain. The terminal shows:\n" + shown_);
    std::array<char, 4096> block{};
    const ssize_t count = ::read(terminal_, block.data(), block.size());
    if (count > 0) shown_.append(block.data(), static_cast<std::size_t>(count));
    return count > 0; // the last program's end closes a terminal with EIO
}

void TerminalRun::waitFor(const std::string& text) {
    const auto deadline = steady_clock::now() + patience;
    while (shown_.find(text) == std::string::npos)
        if (!readMore(deadline)) throw std::runtime_error("Never shown: " + text + "\nThe terminal shows:\n" + shown_);
}

void TerminalRun::type(const std::string& keys) {
    if (::write(terminal_, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size()))
        throw std::system_error(errno, std::generic_category(), "typing");
}

int TerminalRun::finish() {
    const auto deadline = steady_clock::now() + patience;
    while (terminal_ >= 0 && readMore(deadline)) {
    }
    int status = 0;
    if (::waitpid(child_, &status, 0) < 0) throw std::system_error(errno, std::generic_category(), "waitpid");
    child_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace vesk::test
