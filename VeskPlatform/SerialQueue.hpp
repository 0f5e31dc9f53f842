#pragma once

#include <functional>

namespace vesk {

/// Runs blocks one after the other, in the order of submission, off the caller's thread.
class SerialQueue {
public:
    virtual ~SerialQueue() = default;
    /// Returns without waiting; safe from any thread. Blocks do not throw. Throws std::exception where the block
    /// cannot be taken; it is dropped then.
    virtual void async(std::function<void()> block) = 0;
    /// Waits until everything submitted so far has run.
    virtual void drain() = 0;
};

} // namespace vesk
