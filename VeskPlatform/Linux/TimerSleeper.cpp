#include "VeskPlatform/Linux/TimerSleeper.hpp"

#include <asio/steady_timer.hpp>
#include <asio/this_coro.hpp>
#include <asio/use_awaitable.hpp>

namespace vesk {

Task<void> TimerSleeper::sleep(std::chrono::milliseconds duration) {
    const auto executor = co_await asio::this_coro::executor;
    asio::steady_timer timer(executor, duration);
    co_await timer.async_wait(asio::use_awaitable);
}

} // namespace vesk
