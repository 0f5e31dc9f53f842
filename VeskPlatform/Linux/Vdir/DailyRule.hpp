#pragma once

#include "VeskPlatform/Linux/Vdir/RuleParts.hpp"
#include "VeskPlatform/Linux/Vdir/RuleWindow.hpp"

namespace vesk::vdir {

/// The wall times of a YEARLY, MONTHLY, WEEKLY or DAILY rule. All-day rules (`isDate`) have no times of day.
void addDailyOccurrences(const RuleParts& rule, bool isDate, RuleWindow& window);

} // namespace vesk::vdir
