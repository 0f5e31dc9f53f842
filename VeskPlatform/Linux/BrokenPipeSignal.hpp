#pragma once

#include <csignal>

namespace vesk {

/// While it lives, a write of this thread into a pipe without a reader fails with EPIPE and does no more, whatever the
/// program has SIGPIPE do. The signal of such a write goes to the writing thread alone, so it is blocked there and
/// taken back; neither the process's disposition nor other threads are touched. (A socket could refuse the signal by
/// itself, but a program cannot open its /dev/stdin again where that is a socket.)
class BrokenPipeSignal {
public:
    BrokenPipeSignal();
    ~BrokenPipeSignal();
    BrokenPipeSignal(const BrokenPipeSignal&) = delete;
    BrokenPipeSignal& operator=(const BrokenPipeSignal&) = delete;

private:
    sigset_t maskBefore_{};
    /// One that somebody else sent is theirs.
    bool wasPending_ = false;
};

} // namespace vesk
