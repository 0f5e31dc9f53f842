#include "VeskPlatform/Linux/Vdir/RecurrenceRule.hpp"

#include "VeskPlatform/Linux/Vdir/DailyRule.hpp"
#include "VeskPlatform/Linux/Vdir/SubDailyRule.hpp"

#include <algorithm>

// libical reads rules, but does not expand them here. Measured with 3.0.16 against python-dateutil over 735 cases:
// BYSETPOS of weeks and days, BYMONTHDAY of days and BYWEEKNO=53 were wrong, rules ended in the year 2582, rules below
// a day stepped through every second of the months that BYMONTH leaves out, and COUNT rules were walked from the start.

namespace vesk::vdir {
namespace {

using namespace std::chrono;

/// No two walls are farther apart.
constexpr auto wallSlack = days(2);

/// The last wall time that UNTIL can allow. A date allows its whole day, and all-day events look at the date alone, as
/// most programs mean both.
WallTime lastAllowed(const RuleEnd& until, const EventTime& start) {
    if (until.kind == RuleEnd::Kind::date || start.isDate()) return floor<days>(until.wall) + days(1) - seconds(1);
    const bool otherWall = until.kind == RuleEnd::Kind::utc && start.anchor != EventTime::Anchor::utc;
    return otherWall ? until.wall + wallSlack : until.wall;
}

/// Leaves out what lies behind an UNTIL in UTC. Around a change of the offset the wall cannot tell.
void leaveOutBehind(Instant until, const std::function<Instant(WallTime)>& instantOf, std::vector<WallTime>& times) {
    const WallTime surelyBefore = WallTime{floor<seconds>(until).time_since_epoch()} - wallSlack;
    std::erase_if(times, [&](WallTime wall) { return wall > surelyBefore && instantOf(wall) > until; });
}

} // namespace

std::vector<WallTime> ruleOccurrences(const std::string& text, const EventTime& start, WallTime from, WallTime to,
                                      const std::function<Instant(WallTime)>& instantOf) {
    const auto rule = readRule(text);
    if (!rule || (rule->isBelowDay() && start.isDate())) return {};
    if (rule->until) to = std::min(to, lastAllowed(*rule->until, start));
    if (to < start.wall || to < from) return {};
    RuleWindow window(start.wall, from, to, rule->count);
    if (rule->isBelowDay())
        addSubDailyOccurrences(*rule, window);
    else
        addDailyOccurrences(*rule, start.isDate(), window);
    auto times = window.taken();
    if (rule->until && rule->until->kind == RuleEnd::Kind::utc && !start.isDate())
        leaveOutBehind(Instant{rule->until->wall.time_since_epoch()}, instantOf, times);
    return times;
}

} // namespace vesk::vdir
