#pragma once

#include "VeskSupport/Task.hpp"

#include <asio/any_io_executor.hpp>
#include <asio/co_spawn.hpp>
#include <asio/strand.hpp>
#include <asio/this_coro.hpp>
#include <asio/use_awaitable.hpp>
#include <exception>
#include <functional>
#include <utility>

namespace vesk {

/// Where tasks run.
using Executor = asio::any_io_executor;

/// The executor of the task that asks.
inline Task<Executor> currentExecutor() { co_return co_await asio::this_coro::executor; }

/// Runs tasks one at a time, whichever threads the executor below has: another one may go on only where one is
/// suspended.
class SerialExecutor {
public:
    explicit SerialExecutor(const Executor& below) : strand_(asio::make_strand(below)) {}

    /// Runs `task` here while the caller is suspended; returns what it returns, throws what it throws, on the caller's
    /// own executor.
    template <class T> Task<T> run(Task<T> task) const {
        return asio::co_spawn(strand_, std::move(task), asio::use_awaitable);
    }

    /// Starts `task` here by itself. `ended` is called here with its failure, or none and what it returned.
    template <class T> void start(Task<T> task, std::function<void(std::exception_ptr, T)> ended) const {
        asio::co_spawn(strand_, std::move(task), std::move(ended));
    }

private:
    asio::strand<Executor> strand_;
};

} // namespace vesk
