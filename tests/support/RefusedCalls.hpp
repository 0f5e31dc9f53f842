#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vesk::test {

/// Runs `work` in a child process; what it returns, or 128 and the number of the signal that ended it.
inline int inChild(const std::function<int()>& work) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(work());
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

/// Answers a system call of this process with a seccomp action from now on, for ever, also in programs that it becomes:
/// a matter for `inChild`. With a `flag`, only those uses of it that have the flag in the argument of that number.
inline void answerCall(long call, std::uint32_t action, unsigned argument, unsigned flag) {
    const auto load = [](std::size_t offset) {
        return sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(offset));
    };
    const auto elsewhere = static_cast<std::uint8_t>(flag == 0 ? 0 : 1);
    sock_filter filter[] = {
        load(offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(call), 0, 3),
        load(offsetof(seccomp_data, args) + 8 * std::size_t{argument}),
        BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, flag, 0, elsewhere),
        BPF_STMT(BPF_RET | BPF_K, action),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    sock_fprog program{static_cast<unsigned short>(std::size(filter)), filter};
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    if (::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) ::_exit(99);
}

/// Makes the call fail with `error`.
inline void refuseCall(long call, int error, unsigned argument = 0, unsigned flag = 0) {
    answerCall(call, SECCOMP_RET_ERRNO | static_cast<std::uint32_t>(error), argument, flag);
}

/// Kills the process, as abruptly as SIGKILL does, when it comes to the call.
inline void killAtCall(long call, unsigned argument = 0, unsigned flag = 0) {
    answerCall(call, SECCOMP_RET_KILL_PROCESS, argument, flag);
}

} // namespace vesk::test
