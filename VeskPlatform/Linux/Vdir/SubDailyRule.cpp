#include "VeskPlatform/Linux/Vdir/SubDailyRule.hpp"

#include "VeskPlatform/Linux/Vdir/RecurrenceRule.hpp"

#include <algorithm>
#include <bitset>
#include <set>

namespace vesk::vdir {
namespace {

using namespace std::chrono;

/// The values of one BYxxx part, as the library stores them: up to a marker.
std::vector<int> values(const short* list, std::size_t capacity) {
    std::vector<int> result;
    for (std::size_t i = 0; i < capacity && list[i] != ICAL_RECURRENCE_ARRAY_MAX; ++i) result.push_back(list[i]);
    return result;
}

bool contains(const std::vector<int>& list, int value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

/// Whether an empty list (no such part) or the list itself allows a value, counted from the start or from the end.
bool allows(const std::vector<int>& list, int value, int fromEnd) {
    return list.empty() || contains(list, value) || contains(list, fromEnd);
}

/// The parts that leave whole days out.
class DayFilter {
public:
    explicit DayFilter(const icalrecurrencetype& rule)
        : months_(values(rule.by_month, ICAL_BY_MONTH_SIZE)),
          monthDays_(values(rule.by_month_day, ICAL_BY_MONTHDAY_SIZE)),
          yearDays_(values(rule.by_year_day, ICAL_BY_YEARDAY_SIZE)) {
        for (const int encoded : values(rule.by_day, ICAL_BY_DAY_SIZE))
            weekdays_.push_back(icalrecurrencetype_day_day_of_week(static_cast<short>(encoded)) - ICAL_SUNDAY_WEEKDAY);
    }

    bool allowsDay(local_days day) const {
        const year_month_day date{day};
        const int month = static_cast<int>(static_cast<unsigned>(date.month()));
        if (!allows(months_, month, month)) return false;
        const int weekday = static_cast<int>(std::chrono::weekday{day}.c_encoding());
        if (!allows(weekdays_, weekday, weekday)) return false;
        const year_month_day_last monthEnd{date.year(), month_day_last{date.month()}};
        const int inMonth = static_cast<int>(static_cast<unsigned>(date.day()));
        if (!allows(monthDays_, inMonth, inMonth - static_cast<int>(static_cast<unsigned>(monthEnd.day())) - 1))
            return false;
        const int inYear = static_cast<int>((day - local_days{date.year() / 1 / 1}).count()) + 1;
        return allows(yearDays_, inYear, inYear - (date.year().is_leap() ? 366 : 365) - 1);
    }

private:
    std::vector<int> months_, monthDays_, yearDays_, weekdays_;
};

/// One step of the rule is an hour, a minute or a second; a step allows some seconds within itself.
class StepRule {
public:
    StepRule(const icalrecurrencetype& rule, WallTime start)
        : hours_(values(rule.by_hour, ICAL_BY_HOUR_SIZE)), minutes_(values(rule.by_minute, ICAL_BY_MINUTE_SIZE)),
          seconds_(values(rule.by_second, ICAL_BY_SECOND_SIZE)),
          positions_(values(rule.by_set_pos, ICAL_BY_SETPOS_SIZE)) {
        const hh_mm_ss time{start - floor<days>(start)};
        unit_ = rule.freq == ICAL_HOURLY_RECURRENCE ? 3600 : rule.freq == ICAL_MINUTELY_RECURRENCE ? 60 : 1;
        interval_ = rule.interval;
        firstStep_ = floorDivide(start.time_since_epoch().count(), unit_);
        // A part that is finer than the frequency expands; where it is missing, the start's own value stands.
        if (unit_ > 1 && seconds_.empty()) seconds_ = {static_cast<int>(time.seconds().count())};
        if (unit_ > 60 && minutes_.empty()) minutes_ = {static_cast<int>(time.minutes().count())};
    }

    static std::int64_t floorDivide(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

    /// Calls `visit` with each wall time of the day, ascending, until it returns false.
    template <class Visit> bool forEachOfDay(local_days day, Visit visit) const {
        const std::int64_t begin = local_seconds{day}.time_since_epoch().count();
        const std::int64_t end = begin + 86400;
        std::int64_t step = std::max(firstStep_, floorDivide(begin, unit_));
        step += (interval_ - (step - firstStep_) % interval_) % interval_;
        for (; step * unit_ < end; step += interval_)
            for (const std::int64_t time : timesOfStep(step * unit_, static_cast<int>(step * unit_ - begin)))
                if (!visit(WallTime{seconds(time)})) return false;
        return true;
    }

private:
    std::vector<std::int64_t> timesOfStep(std::int64_t stepBegin, int secondOfDay) const {
        std::vector<std::int64_t> times;
        if (!hours_.empty() && !contains(hours_, secondOfDay / 3600)) return times;
        if (unit_ <= 60 && !minutes_.empty() && !contains(minutes_, secondOfDay / 60 % 60)) return times;
        if (unit_ == 1) {
            if (seconds_.empty() || contains(seconds_, secondOfDay % 60)) times.push_back(stepBegin);
        } else if (unit_ == 60) {
            for (const int s : seconds_) times.push_back(stepBegin + s);
        } else {
            for (const int m : minutes_)
                for (const int s : seconds_) times.push_back(stepBegin + std::int64_t{m} * 60 + s);
        }
        std::sort(times.begin(), times.end());
        times.erase(std::unique(times.begin(), times.end()), times.end());
        return positions_.empty() ? times : selected(times);
    }

    std::vector<std::int64_t> selected(const std::vector<std::int64_t>& times) const {
        std::vector<std::int64_t> result;
        const int count = static_cast<int>(times.size());
        for (int i = 0; i < count; ++i)
            if (contains(positions_, i + 1) || contains(positions_, i - count))
                result.push_back(times[static_cast<std::size_t>(i)]);
        return result;
    }

    std::vector<int> hours_, minutes_, seconds_, positions_;
    std::int64_t unit_, interval_, firstStep_;
};

} // namespace

std::vector<WallTime> subDailyOccurrences(const icalrecurrencetype& rule, WallTime start, WallTime from, WallTime to) {
    std::vector<WallTime> result;
    const DayFilter filter(rule);
    const StepRule steps(rule, start);
    std::int64_t left = rule.count > 0 ? rule.count : INT64_MAX;
    // Counting has to begin at the start, but not for ever: nobody's calendar counts more steps than this.
    std::int64_t budget = 20'000'000;
    const auto visit = [&](WallTime wall) {
        if (wall < start) return true;
        if (wall > to || left-- <= 0 || --budget <= 0 || result.size() >= maximumOccurrences) return false;
        if (wall >= from) result.push_back(wall);
        return true;
    };
    local_days day = floor<days>(rule.count > 0 ? start : std::max(start, from));
    for (; WallTime{day} <= to; day += days(1))
        if (filter.allowsDay(day) && !steps.forEachOfDay(day, visit)) break;
    return result;
}

} // namespace vesk::vdir
