#pragma once

#include "VeskPlatform/Linux/Vdir/EventComponent.hpp"
#include "VeskSupport/LocalCalendar.hpp"

#include <functional>
#include <string>
#include <vector>

namespace vesk::vdir {

/// The most occurrences that one rule gives for one question. A rule that passes it ("every second") is cut off there,
/// so that a hostile invitation cannot fill the memory; a day of seconds still fits.
constexpr std::size_t maximumOccurrences = 100'000;

/// The wall times that `rule` (RFC 5545, section 3.3.10) gives in [from, to], ascending, counted from `start`. All of
/// it happens on the wall of `start`: `untilOnWall` turns an UNTIL in UTC into a time of that wall. A start that the
/// rule leaves out is neither given nor counted. An unreadable rule gives nothing.
std::vector<WallTime> ruleOccurrences(const std::string& rule, const EventTime& start, WallTime from, WallTime to,
                                      const std::function<WallTime(Instant)>& untilOnWall);

} // namespace vesk::vdir
