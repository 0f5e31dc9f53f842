#include "VeskPlatform/Linux/Secrets/GlibObjects.hpp"

namespace vesk {

TimeLimit::TimeLimit(std::chrono::milliseconds time)
    : cancellable_(g_cancellable_new()),
      watcher_([this, end = std::chrono::steady_clock::now() + time] { watch(end); }) {}

TimeLimit::~TimeLimit() {
    {
        const std::lock_guard guard(lock_);
        isOver_ = true;
    }
    changed_.notify_all();
    watcher_.join();
}

void TimeLimit::watch(std::chrono::steady_clock::time_point end) {
    std::unique_lock guard(lock_);
    const bool isDone = changed_.wait_until(guard, end, [this] { return isOver_; });
    guard.unlock();
    if (!isDone) g_cancellable_cancel(cancellable_.get());
}

} // namespace vesk
