#pragma once

#include "VeskPlatform/SerialQueue.hpp"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <thread>

namespace vesk {

/// A queue on a thread of its own, made by the first block; where the system refuses it, `async` throws
/// std::system_error and the block is dropped. Its destructor runs what is still queued.
class ThreadSerialQueue : public SerialQueue {
public:
    ThreadSerialQueue() = default;
    ThreadSerialQueue(const ThreadSerialQueue&) = delete;
    ThreadSerialQueue& operator=(const ThreadSerialQueue&) = delete;
    ~ThreadSerialQueue() override;

    void async(std::function<void()> block) override;
    void drain() override;

private:
    void run();

    std::mutex mutex_;
    std::condition_variable submitted_, finished_;
    std::deque<std::function<void()>> blocks_;
    std::uint64_t submittedCount_ = 0, finishedCount_ = 0;
    bool ending_ = false;
    std::thread thread_;
};

} // namespace vesk
