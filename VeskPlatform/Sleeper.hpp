#pragma once

#include "VeskSupport/Task.hpp"

#include <chrono>

namespace vesk {

/// Waits. Called on the main executor, which stays free for other tasks meanwhile.
class Sleeper {
public:
    virtual ~Sleeper() = default;
    virtual Task<void> sleep(std::chrono::milliseconds duration) = 0;
};

} // namespace vesk
