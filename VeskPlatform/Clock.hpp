#pragma once

#include "VeskSupport/Instant.hpp"

namespace vesk {

/// The wall clock. Safe from any thread.
class Clock {
public:
    virtual ~Clock() = default;
    virtual Instant now() = 0;
};

} // namespace vesk
