#include "VeskPlatform/Portable/SystemClock.hpp"

namespace vesk {

Instant SystemClock::now() { return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now()); }

} // namespace vesk
