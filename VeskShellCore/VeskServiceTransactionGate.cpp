#include "VeskShellCore/VeskServiceTransactionGate.hpp"

#include "VeskSupport/Continuation.hpp"

#include <cstdio>
#include <cstdlib>

namespace vesk {
namespace {

struct Nothing {};

Task<Nothing> withNothing(std::function<Task<void>()> operation) {
    Task<void> running = operation();
    co_await std::move(running);
    co_return Nothing{};
}

} // namespace

Task<void> VeskServiceTransactionGate::run(std::function<Task<void>()> operation) {
    std::function<Task<Nothing>()> wrapped = [&operation] { return withNothing(operation); };
    Task<Nothing> running = run<Nothing>(std::move(wrapped));
    co_await std::move(running);
}

Task<void> VeskServiceTransactionGate::acquire() {
    requireOwner();
    if (!isRunning_) {
        isRunning_ = true;
        co_return;
    }
    Continuation turn;
    waiters_.push_back(&turn);
    co_await turn.wait();
    requireOwner();
}

/// The gate stays closed between one operation and the next that waits, so that no newcomer slips in.
void VeskServiceTransactionGate::release() {
    requireOwner();
    if (waiters_.empty()) {
        isRunning_ = false;
        return;
    }
    Continuation& first = *waiters_.front();
    waiters_.pop_front();
    first.resume();
}

void VeskServiceTransactionGate::requireOwner() const {
    if (std::this_thread::get_id() == owner_) return;
    std::fputs("VeskServiceTransactionGate was used outside the main executor.\n", stderr);
    std::abort();
}

} // namespace vesk
