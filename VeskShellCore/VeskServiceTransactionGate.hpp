#pragma once

#include "VeskSupport/Task.hpp"

#include <deque>
#include <exception>
#include <functional>
#include <optional>
#include <thread>
#include <utility>

namespace vesk {

class Continuation;

/// Lets one operation run at a time, strictly in the order of the calls. While an operation is suspended the gate stays
/// closed. A caller that waits cannot give up, and an operation that calls the same gate waits for itself for ever.
/// The gate belongs to the thread that made it, the main executor's, and every call must come from there: another
/// thread's is a programming error, which ends the process.
class VeskServiceTransactionGate {
public:
    VeskServiceTransactionGate() : owner_(std::this_thread::get_id()) {}
    VeskServiceTransactionGate(const VeskServiceTransactionGate&) = delete;
    VeskServiceTransactionGate& operator=(const VeskServiceTransactionGate&) = delete;

    /// Runs the operation when its turn has come, and returns what it returns or throws what it throws. The gate and
    /// what the operation refers to outlive the task.
    template <class Value> Task<Value> run(std::function<Task<Value>()> operation) {
        co_await acquire();
        std::optional<Value> value;
        std::exception_ptr failure;
        try {
            Task<Value> running = operation();
            value.emplace(co_await std::move(running));
        } catch (...) {
            failure = std::current_exception();
        }
        release();
        if (failure) std::rethrow_exception(failure);
        co_return *std::move(value);
    }
    Task<void> run(std::function<Task<void>()> operation);

private:
    Task<void> acquire();
    void release();
    void requireOwner() const;

    std::thread::id owner_;
    bool isRunning_ = false;
    /// Each in the frame of the task that waits.
    std::deque<Continuation*> waiters_;
};

} // namespace vesk
