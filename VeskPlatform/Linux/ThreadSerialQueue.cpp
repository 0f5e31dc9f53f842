#include "VeskPlatform/Linux/ThreadSerialQueue.hpp"

#include <utility>

namespace vesk {

ThreadSerialQueue::~ThreadSerialQueue() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    submitted_.notify_one();
    if (thread_.joinable()) thread_.join();
}

void ThreadSerialQueue::async(std::function<void()> block) {
    {
        const std::lock_guard lock(mutex_);
        // First, since a thread that the system refuses must leave no block behind for `drain` to wait for.
        if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
        blocks_.push_back(std::move(block));
        ++submittedCount_;
    }
    submitted_.notify_one();
}

void ThreadSerialQueue::drain() {
    std::unique_lock lock(mutex_);
    finished_.wait(lock, [this, goal = submittedCount_] { return finishedCount_ >= goal; });
}

void ThreadSerialQueue::run() {
    std::unique_lock lock(mutex_);
    for (;;) {
        submitted_.wait(lock, [this] { return ending_ || !blocks_.empty(); });
        if (blocks_.empty()) return;
        {
            const auto block = std::move(blocks_.front());
            blocks_.pop_front();
            lock.unlock();
            block();
        } // what the block holds is let go before it counts as finished
        lock.lock();
        ++finishedCount_;
        finished_.notify_all();
    }
}

} // namespace vesk
