#pragma once

#include "VeskPlatform/Clock.hpp"

namespace vesk {

class SystemClock : public Clock {
public:
    Instant now() override;
};

} // namespace vesk
