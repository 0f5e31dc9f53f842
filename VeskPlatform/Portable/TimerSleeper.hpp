#pragma once

#include "VeskPlatform/Sleeper.hpp"

namespace vesk {

/// Waits on a timer of the executor that runs the caller.
class TimerSleeper : public Sleeper {
public:
    Task<void> sleep(std::chrono::milliseconds duration) override;
};

} // namespace vesk
