#pragma once

#include "VeskSupport/Instant.hpp"

#include <libical/ical.h>
#include <vector>

namespace vesk::vdir {

/// The wall times of an HOURLY, MINUTELY or SECONDLY rule in [from, to], ascending. Days that the rule's date parts
/// leave out cost one test each, and the steps of a day are found by arithmetic, so that no rule can stall its reader.
std::vector<WallTime> subDailyOccurrences(const icalrecurrencetype& rule, WallTime start, WallTime from, WallTime to);

} // namespace vesk::vdir
