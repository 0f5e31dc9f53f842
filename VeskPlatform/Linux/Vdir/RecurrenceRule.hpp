#pragma once

#include "VeskPlatform/Linux/Vdir/EventComponent.hpp"
#include "VeskPlatform/Linux/Vdir/RuleWindow.hpp"

#include <functional>
#include <string>
#include <vector>

namespace vesk::vdir {

/// The wall times that `rule` (RFC 5545, section 3.3.10) gives in [from, to], ascending, counted from `start`; at most
/// `maximumOccurrences`. All of it happens on the wall of `start`; `instantOf` tells what a time of that wall means, so
/// that it can be compared with an UNTIL in UTC. A `start` that the rule leaves out is not given, but COUNT counts it.
/// An unreadable rule gives nothing. No rule takes longer than some tens of milliseconds.
std::vector<WallTime> ruleOccurrences(const std::string& rule, const EventTime& start, WallTime from, WallTime to,
                                      const std::function<Instant(WallTime)>& instantOf);

} // namespace vesk::vdir
