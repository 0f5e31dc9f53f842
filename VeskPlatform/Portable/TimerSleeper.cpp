#include "VeskPlatform/Portable/TimerSleeper.hpp"

#include <asio/steady_timer.hpp>
#include <asio/this_coro.hpp>
#include <asio/use_awaitable.hpp>

namespace vesk {

/// A timer wakes its process 20 µs late, and later on a busy machine (measured on Linux), which adds up where a pause
/// follows each letter of a text: it is set to end early, and the clock is watched for the rest.
Task<void> TimerSleeper::sleep(std::chrono::milliseconds duration) {
    static constexpr std::chrono::microseconds headStart{100};
    const auto deadline = std::chrono::steady_clock::now() + duration;
    const auto executor = co_await asio::this_coro::executor;
    asio::steady_timer timer(executor, deadline - headStart);
    co_await timer.async_wait(asio::use_awaitable);
    while (std::chrono::steady_clock::now() < deadline) {
    }
}

} // namespace vesk
