#pragma once

#include "VeskSupport/Task.hpp"

#include <asio/any_io_executor.hpp>
#include <asio/async_result.hpp>
#include <asio/execution/outstanding_work.hpp>
#include <asio/post.hpp>
#include <asio/prefer.hpp>
#include <asio/this_coro.hpp>
#include <asio/use_awaitable.hpp>
#include <atomic>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace vesk {

/// Waits for an answer that comes by a callback. `begin` is called at once, on the caller's executor, and is given what
/// takes the answer: callable from any thread, also before `begin` returns. The first answer counts; the caller goes on
/// with it on its own executor, which keeps running until then. A failure of `begin` is thrown.
template <class T> Task<T> answerOfCallback(std::function<void(std::function<void(T)> answer)> begin) {
    struct Wait {
        std::atomic<bool> answered = false;
        std::optional<T> value;
        std::exception_ptr failure;
    };
    const auto wait = std::make_shared<Wait>();
    const asio::any_io_executor executor = co_await asio::this_coro::executor;
    const auto start = [wait, executor, &begin](auto handler) {
        // The executor goes on running while it waits for the answer, and not for as long as somebody keeps the
        // callback.
        struct Held {
            decltype(asio::prefer(executor, asio::execution::outstanding_work.tracked)) busy;
            decltype(handler) resumed;
        };
        const auto held = std::make_shared<std::optional<Held>>(
            Held{asio::prefer(executor, asio::execution::outstanding_work.tracked), std::move(handler)});
        const auto resume = [held] {
            const auto taken = std::make_shared<Held>(*std::move(*held));
            held->reset();
            asio::post(taken->busy, [taken] { std::move(taken->resumed)(); });
        };
        try {
            begin([wait, resume](T value) {
                if (wait->answered.exchange(true)) return;
                wait->value.emplace(std::move(value));
                resume();
            });
        } catch (...) {
            if (wait->answered.exchange(true)) return;
            wait->failure = std::current_exception();
            resume();
        }
    };
    co_await asio::async_initiate<const asio::use_awaitable_t<>, void()>(start, asio::use_awaitable);
    if (wait->failure) std::rethrow_exception(wait->failure);
    co_return std::move(*wait->value);
}

} // namespace vesk
