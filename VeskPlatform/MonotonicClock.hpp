#pragma once

#include <chrono>

namespace vesk {

/// The time since some point in the past, which nothing sets back or ahead. Safe from any thread.
class MonotonicClock {
public:
    virtual ~MonotonicClock() = default;
    virtual std::chrono::nanoseconds now() = 0;
};

} // namespace vesk
