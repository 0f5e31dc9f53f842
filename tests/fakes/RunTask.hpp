#pragma once

#include "VeskSupport/Task.hpp"

#include <asio/co_spawn.hpp>
#include <asio/io_context.hpp>
#include <asio/use_future.hpp>

namespace vesk::test {

/// Runs a task on an executor of its own until nothing is left to do; returns what it returns, throws what it throws.
template <class T> T runTask(Task<T> task) {
    asio::io_context context;
    auto outcome = asio::co_spawn(context, std::move(task), asio::use_future);
    context.run();
    return outcome.get();
}

} // namespace vesk::test
