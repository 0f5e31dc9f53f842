#pragma once

#include "VeskSupport/Task.hpp"

#include <asio/redirect_error.hpp>
#include <asio/steady_timer.hpp>
#include <asio/this_coro.hpp>
#include <asio/use_awaitable.hpp>
#include <exception>
#include <memory>
#include <system_error>
#include <utility>

namespace vesk {

/// One suspended wait that a callback resumes exactly once, by returning or by throwing. Used on the executor of the
/// waiting task only.
class Continuation {
public:
    /// Suspends until `resume`; throws what it is given. Resuming before the wait is no error: the wait then ends at
    /// once.
    Task<void> wait() {
        if (!resumed_) {
            const auto executor = co_await asio::this_coro::executor;
            timer_ = std::make_unique<asio::steady_timer>(executor, asio::steady_timer::time_point::max());
            std::error_code cancelled; // the timer has no end of its own
            co_await timer_->async_wait(asio::redirect_error(asio::use_awaitable, cancelled));
        }
        if (failure_) std::rethrow_exception(failure_);
    }

    void resume(std::exception_ptr failure = nullptr) {
        if (resumed_) return;
        resumed_ = true;
        failure_ = std::move(failure);
        if (timer_) timer_->cancel();
    }

private:
    bool resumed_ = false;
    std::exception_ptr failure_;
    std::unique_ptr<asio::steady_timer> timer_;
};

} // namespace vesk
