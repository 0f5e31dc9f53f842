#include "VeskPlatform/Linux/StartedChild.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <csignal>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace vesk {
namespace {

std::int32_t statusOf(const siginfo_t& end) { return end.si_code == CLD_EXITED ? end.si_status : 128 + end.si_status; }

/// The error number, or 0.
int waitFor(pid_t child, siginfo_t& end) {
    while (::waitid(P_PID, static_cast<id_t>(child), &end, WEXITED) != 0)
        if (errno != EINTR) return errno;
    return 0;
}

} // namespace

StartedChild::StartedChild(pid_t child, std::string name) : child_(child), name_(std::move(name)) {
    handle_.reset(static_cast<int>(::syscall(SYS_pidfd_open, child, 0)));
    if (handle_) return;
    const int failure = errno;
    end();
    throw PosixError(failure, name_);
}

StartedChild::StartedChild(StartedChild&& other) noexcept
    : child_(std::exchange(other.child_, -1)), name_(std::move(other.name_)), handle_(std::move(other.handle_)) {}

bool StartedChild::hasEndedWithin(std::chrono::milliseconds time) const {
    pollfd ended{handle_.get(), POLLIN, 0};
    return ::poll(&ended, 1, static_cast<int>(time.count())) > 0;
}

std::int32_t StartedChild::takeStatus() {
    siginfo_t end{};
    if (const int failure = waitFor(std::exchange(child_, -1), end); failure != 0) throw PosixError(failure, name_);
    return statusOf(end);
}

void StartedChild::end() noexcept {
    if (child_ < 0) return;
    ::kill(child_, SIGKILL); // its number is not given to another before it is reaped
    siginfo_t ignored{};
    waitFor(std::exchange(child_, -1), ignored);
}

} // namespace vesk
