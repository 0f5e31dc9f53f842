#pragma once

#include "VeskPlatform/MonotonicClock.hpp"

namespace vesk {

/// The C++ library's steady clock: on Linux CLOCK_MONOTONIC.
class SteadyMonotonicClock : public MonotonicClock {
public:
    std::chrono::nanoseconds now() override { return std::chrono::steady_clock::now().time_since_epoch(); }
};

} // namespace vesk
