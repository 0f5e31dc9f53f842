#pragma once

#include "VeskPlatform/Linux/Vdir/RuleParts.hpp"
#include "VeskPlatform/Linux/Vdir/RuleWindow.hpp"

namespace vesk::vdir {

/// The wall times of an HOURLY, MINUTELY or SECONDLY rule. A day that the rule's date parts leave out costs one test;
/// the number of times on a day depends on where its first step falls, and is counted once for each such place. So no
/// rule can stall its reader, whatever it counts or leaves out.
void addSubDailyOccurrences(const RuleParts& rule, RuleWindow& window);

} // namespace vesk::vdir
