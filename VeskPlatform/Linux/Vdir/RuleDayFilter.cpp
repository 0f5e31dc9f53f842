#include "VeskPlatform/Linux/Vdir/RuleDayFilter.hpp"

#include <algorithm>

namespace vesk::vdir {

using namespace std::chrono;

RuleDayFilter::Numbers::Numbers(const std::vector<int>& numbers) : all_(numbers.empty()) {
    for (const int number : numbers) {
        const auto place = static_cast<std::size_t>(std::abs(number));
        if (place == 0 || place >= fromStart_.size()) continue;
        (number > 0 ? fromStart_ : fromEnd_).set(place);
    }
}

bool RuleDayFilter::Numbers::contain(int number, int count) const {
    return all_ || fromStart_[static_cast<std::size_t>(number)]
           || fromEnd_[static_cast<std::size_t>(count - number) + 1];
}

void RuleDayFilter::Numbers::onlyAllow(int number) {
    all_ = false;
    fromStart_.set(static_cast<std::size_t>(number));
}

RuleDayFilter::RuleDayFilter(const RuleParts& rule, WallDay start)
    : months_(rule.months), weekNumbers_(rule.weekNumbers), yearDays_(rule.yearDays), monthDays_(rule.monthDays),
      allWeekdays_(rule.weekdays.empty()),
      numbersCountInYear_(rule.frequency == Frequency::yearly && rule.months.empty()), weekStart_(rule.weekStart) {
    // A number counts in a month or a year; with any other rule it says nothing.
    const bool numbersCount =
        rule.frequency == Frequency::monthly || (rule.frequency == Frequency::yearly && rule.weekNumbers.empty());
    for (const RuleWeekday& day : rule.weekdays) {
        if (day.number != 0 && numbersCount)
            numberedWeekdays_.push_back(day);
        else
            weekdays_.set(static_cast<std::size_t>(day.weekday));
    }
    if (rule.frequency >= Frequency::daily) return;
    if (!allWeekdays_ || !yearDays_.all() || !monthDays_.all()) return;
    const year_month_day date{start};
    if (!weekNumbers_.all() || rule.frequency == Frequency::weekly) {
        allWeekdays_ = false;
        weekdays_.set(weekday{start}.c_encoding());
        return;
    }
    monthDays_.onlyAllow(static_cast<int>(static_cast<unsigned>(date.day())));
    if (rule.frequency == Frequency::yearly && months_.all())
        months_.onlyAllow(static_cast<int>(static_cast<unsigned>(date.month())));
}

bool RuleDayFilter::allows(WallDay day) const {
    const year_month_day date{day};
    if (!months_.contain(static_cast<int>(static_cast<unsigned>(date.month())), 12)) return false;
    const int ofMonth = static_cast<int>(static_cast<unsigned>(date.day()));
    const year_month_day_last monthEnd{date.year(), month_day_last{date.month()}};
    const int monthLength = static_cast<int>(static_cast<unsigned>(monthEnd.day()));
    if (!monthDays_.contain(ofMonth, monthLength)) return false;
    const int ofYear = static_cast<int>((day - local_days{date.year() / 1 / 1}).count()) + 1;
    const int yearLength = date.year().is_leap() ? 366 : 365;
    if (!yearDays_.contain(ofYear, yearLength) || !allowsWeek(day)) return false;
    return allowsWeekday(day, ofMonth, monthLength, ofYear, yearLength);
}

/// Weeks are counted as ISO 8601 does, from `weekStart_`: week 1 has at least four days of its year.
bool RuleDayFilter::allowsWeek(WallDay day) const {
    if (weekNumbers_.all()) return true;
    const auto middleOfWeek = [this](WallDay d) {
        const int behindStart = (static_cast<int>(weekday{d}.c_encoding()) - weekStart_ + 7) % 7;
        return d - days(behindStart) + days(3);
    };
    const WallDay middle = middleOfWeek(day);
    const year weekYear = year_month_day{middle}.year();
    const auto weekOf = [&](WallDay d) { return static_cast<int>((d - local_days{weekYear / 1 / 1}).count()) / 7 + 1; };
    // The last week has the year's 28 December, whatever day weeks begin with.
    return weekNumbers_.contain(weekOf(middle), weekOf(middleOfWeek(local_days{weekYear / 12 / 28})));
}

bool RuleDayFilter::allowsWeekday(WallDay day, int ofMonth, int monthLength, int ofYear, int yearLength) const {
    if (allWeekdays_) return true;
    const auto encoding = weekday{day}.c_encoding();
    if (weekdays_[encoding]) return true;
    const int place = numbersCountInYear_ ? ofYear : ofMonth, length = numbersCountInYear_ ? yearLength : monthLength;
    const int fromStart = (place - 1) / 7 + 1, fromEnd = -((length - place) / 7 + 1);
    return std::any_of(numberedWeekdays_.begin(), numberedWeekdays_.end(), [&](const RuleWeekday& wanted) {
        return wanted.weekday == static_cast<int>(encoding) && (wanted.number == fromStart || wanted.number == fromEnd);
    });
}

} // namespace vesk::vdir
