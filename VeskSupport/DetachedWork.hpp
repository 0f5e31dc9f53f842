#pragma once

#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Task.hpp"

#include <asio/any_io_executor.hpp>
#include <asio/async_result.hpp>
#include <asio/execution/outstanding_work.hpp>
#include <asio/post.hpp>
#include <asio/prefer.hpp>
#include <asio/use_awaitable.hpp>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace vesk {

/// Runs `work`, which may block for as long as it likes, on a thread of its own while the caller is suspended; then
/// returns what it returned, or throws what it threw, on the caller's executor. No pool: work that never ends must not
/// keep other work from beginning. The executor outlives the work, and whatever `work` refers to must, too. Throws
/// PosixError where no thread can be started.
template <class T> Task<T> onThreadOfItsOwn(std::function<T()> work) {
    struct Outcome {
        std::function<T()> work;
        std::optional<T> value;
        std::exception_ptr failure;

        void run() noexcept {
            try {
                value.emplace(work());
            } catch (...) {
                failure = std::current_exception();
            }
        }
    };
    const auto outcome = std::make_shared<Outcome>();
    outcome->work = std::move(work);
    const asio::any_io_executor executor = co_await asio::this_coro::executor;
    const auto start = [outcome, executor](auto handler) {
        // The executor goes on running while it waits for the thread.
        auto busy = asio::prefer(executor, asio::execution::outstanding_work.tracked);
        auto kept = std::make_shared<decltype(handler)>(std::move(handler));
        try {
            std::thread([outcome, busy, kept] {
                outcome->run();
                asio::post(busy, [kept] { std::move (*kept)(); });
            }).detach();
        } catch (const std::system_error& error) {
            outcome->failure = std::make_exception_ptr(PosixError(error.code().value(), "a thread"));
            asio::post(busy, [kept] { std::move (*kept)(); });
        }
    };
    co_await asio::async_initiate<const asio::use_awaitable_t<>, void()>(start, asio::use_awaitable);
    if (outcome->failure) std::rethrow_exception(outcome->failure);
    co_return std::move(*outcome->value);
}

} // namespace vesk
