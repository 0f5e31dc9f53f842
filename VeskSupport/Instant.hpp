#pragma once

#include <chrono>
#include <compare>

namespace vesk {

/// A point in time, UTC, to the millisecond.
using Instant = std::chrono::sys_time<std::chrono::milliseconds>;

/// A date and time of day on some wall, without a zone; proleptic Gregorian. A plain date has a time of zero.
/// Counted in seconds since 1970-01-01 00:00 of the same wall.
using WallTime = std::chrono::local_seconds;

/// A day of some wall.
using WallDay = std::chrono::local_days;

} // namespace vesk
