#include "VeskPlatform/Linux/BrokenPipeSignal.hpp"

#include <cerrno>
#include <ctime>

namespace vesk {
namespace {

sigset_t onlyBrokenPipe() {
    sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGPIPE);
    return signals;
}

bool isPending() {
    sigset_t pending;
    return ::sigpending(&pending) == 0 && ::sigismember(&pending, SIGPIPE) == 1;
}

} // namespace

BrokenPipeSignal::BrokenPipeSignal() : wasPending_(isPending()) {
    const sigset_t signals = onlyBrokenPipe();
    ::pthread_sigmask(SIG_BLOCK, &signals, &maskBefore_);
}

BrokenPipeSignal::~BrokenPipeSignal() {
    const int failure = errno;
    const sigset_t signals = onlyBrokenPipe();
    const timespec atOnce{};
    if (!wasPending_ && isPending())
        while (::sigtimedwait(&signals, nullptr, &atOnce) < 0 && errno == EINTR) {
        }
    ::pthread_sigmask(SIG_SETMASK, &maskBefore_, nullptr);
    errno = failure;
}

} // namespace vesk
