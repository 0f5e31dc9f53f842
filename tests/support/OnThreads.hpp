#pragma once

#include <cstddef>
#include <latch>
#include <thread>
#include <vector>

namespace vesk::test {

/// Calls `work` with each number below `count`, each on a thread of its own; they begin together. Returns when all have
/// ended. `work` does not throw.
template <class Work> void onThreads(std::size_t count, const Work& work) {
    std::latch start(static_cast<std::ptrdiff_t>(count));
    std::vector<std::jthread> threads;
    try {
        while (threads.size() < count)
            threads.emplace_back([&start, &work, i = threads.size()] {
                start.arrive_and_wait();
                work(i);
            });
    } catch (...) { // no more threads: those that are there must not wait for others
        start.count_down(static_cast<std::ptrdiff_t>(count - threads.size()));
        throw;
    }
}

} // namespace vesk::test
