#pragma once

#include <csignal>
#include <cstdlib>
#include <functional>
#include <sys/ptrace.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vesk::test {

/// Runs `work` in a child process that is killed at its stop of that number, from 1. A stop is the beginning or the end
/// of a system call, so that the odd ones leave a call undone. Returns whether it was killed: the child had not ended
/// before.
inline bool killedAtStop(int number, const std::function<void()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        ::raise(SIGSTOP);
        work();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    for (int stop = 0; stop < number; ++stop) {
        if (!WIFSTOPPED(status)) return false;
        ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        ::waitpid(child, &status, 0);
    }
    if (!WIFSTOPPED(status)) return false;
    ::kill(child, SIGKILL);
    ::waitpid(child, &status, 0);
    return true;
}

} // namespace vesk::test
