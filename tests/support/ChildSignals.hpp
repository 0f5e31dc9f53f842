#pragma once

#include <csignal>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>

namespace vesk::test {

/// The signals that a mask in the text of /proc/PID/status names. The C library keeps two beyond 31 to itself.
inline std::uint64_t signalsIn(const std::string& status, const std::string& mask) {
    const auto at = status.find(mask + ":\t");
    if (at == std::string::npos) return ~std::uint64_t{0};
    return std::stoull(status.substr(at + mask.size() + 2), nullptr, 16) & 0x7fffffffU;
}

inline void expectDefaultSignals(const std::string& status) {
    EXPECT_EQ(signalsIn(status, "SigBlk"), 0U) << status;
    EXPECT_EQ(signalsIn(status, "SigIgn"), 0U) << status;
}

/// As a program does that wants its failed writes told as errors, and as a thread that leaves signals to another.
class SignalsOfThisProcess {
public:
    SignalsOfThisProcess() : pipeBefore_(std::signal(SIGPIPE, SIG_IGN)) {
        sigset_t blocked;
        ::sigemptyset(&blocked);
        ::sigaddset(&blocked, SIGTERM);
        ::pthread_sigmask(SIG_BLOCK, &blocked, &maskBefore_);
    }
    ~SignalsOfThisProcess() {
        std::signal(SIGPIPE, pipeBefore_);
        ::pthread_sigmask(SIG_SETMASK, &maskBefore_, nullptr);
    }
    SignalsOfThisProcess(const SignalsOfThisProcess&) = delete;
    SignalsOfThisProcess& operator=(const SignalsOfThisProcess&) = delete;

private:
    void (*pipeBefore_)(int);
    sigset_t maskBefore_{};
};

} // namespace vesk::test
