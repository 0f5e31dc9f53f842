#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace vesk::vdir {

/// Calls `work(i)` for each i below `count`, on as many threads as there are processors (four at most) once there are
/// `threshold` or more of them; on fewer where the system gives no more threads. Returns when all have run; the first
/// exception is thrown again then.
template <class Work> void inParallel(std::size_t count, std::size_t threshold, Work work) {
    if (count < threshold || count < 2) {
        for (std::size_t i = 0; i < count; ++i) work(i);
        return;
    }
    const std::size_t block = std::clamp<std::size_t>(count / 64, 1, 256);
    std::atomic<std::size_t> next{0};
    std::exception_ptr failure;
    std::mutex failureMutex;
    const auto run = [&] {
        try {
            for (std::size_t begin = next.fetch_add(block); begin < count; begin = next.fetch_add(block))
                for (std::size_t i = begin; i < std::min(count, begin + block); ++i) work(i);
        } catch (...) {
            const std::lock_guard lock(failureMutex);
            if (!failure) failure = std::current_exception();
            next = count;
        }
    };
    std::vector<std::thread> helpers;
    const std::size_t threads = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, 4);
    try {
        for (std::size_t i = 1; i < threads; ++i) helpers.emplace_back(run);
    } catch (const std::system_error&) {
        // The user's limit of processes is reached: this thread does the work that is left.
    }
    run();
    for (std::thread& helper : helpers) helper.join();
    if (failure) std::rethrow_exception(failure);
}

} // namespace vesk::vdir
