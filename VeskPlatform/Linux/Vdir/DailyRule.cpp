#include "VeskPlatform/Linux/Vdir/DailyRule.hpp"

#include "VeskPlatform/Linux/Vdir/RuleDayFilter.hpp"

#include <algorithm>

namespace vesk::vdir {
namespace {

using namespace std::chrono;

struct DaysOfPeriod {
    WallDay begin{}, end{};
};

/// The years, months, weeks or days of a frequency, numbered without a gap.
class Periods {
public:
    explicit Periods(const RuleParts& rule) : frequency_(rule.frequency), weekStart_(rule.weekStart) {}

    std::int64_t numberOf(WallDay day) const {
        const year_month_day date{day};
        const int yearNumber = static_cast<int>(date.year());
        switch (frequency_) {
        case Frequency::yearly: return yearNumber;
        case Frequency::monthly: return yearNumber * 12 + static_cast<int>(static_cast<unsigned>(date.month())) - 1;
        case Frequency::weekly: return floor<weeks>(day - firstWeek()).count();
        default: return day.time_since_epoch().count();
        }
    }

    DaysOfPeriod at(std::int64_t number) const {
        const auto n = static_cast<int>(number);
        switch (frequency_) {
        case Frequency::yearly: return {local_days{year{n} / 1 / 1}, local_days{year{n + 1} / 1 / 1}};
        case Frequency::monthly: return {startOfMonth(n), startOfMonth(n + 1)};
        case Frequency::weekly: return {firstWeek() + weeks(n), firstWeek() + weeks(n + 1)};
        default: return {WallDay{days(n)}, WallDay{days(n + 1)}};
        }
    }

private:
    static WallDay startOfMonth(int number) {
        return local_days{year{number / 12} / month{static_cast<unsigned>(number % 12 + 1)} / 1};
    }

    /// A week of the year 0; 1970 began on a Thursday.
    WallDay firstWeek() const { return WallDay{days(weekStart_ - 4)} - weeks(103'000); }

    Frequency frequency_;
    int weekStart_;
};

/// Every combination of the rule's hours, minutes and seconds; where one of them is missing, the start's own stands.
std::vector<seconds> timesOfDay(const RuleParts& rule, bool isDate, WallTime start) {
    if (isDate) return {seconds(0)};
    const hh_mm_ss time{start - floor<days>(start)};
    const auto given = [](const std::vector<int>& list, auto own) {
        return list.empty() ? std::vector<int>{static_cast<int>(own.count())} : list;
    };
    std::vector<seconds> result;
    for (const int h : given(rule.hours, time.hours()))
        for (const int m : given(rule.minutes, time.minutes()))
            // A leap second is the last second of its minute.
            for (const int s : given(rule.seconds, time.seconds()))
                result.push_back(hours(h) + minutes(m) + seconds(std::min(s, 59)));
    std::sort(result.begin(), result.end());
    result.erase(std::unique(result.begin(), result.end()), result.end());
    return result;
}

/// The places that BYSETPOS takes among `count`, ascending.
std::vector<std::size_t> selectedPlaces(const std::vector<int>& positions, std::size_t count) {
    std::vector<std::size_t> places;
    for (const int position : positions) {
        const auto place = static_cast<std::size_t>(std::abs(position));
        if (place >= 1 && place <= count) places.push_back(position > 0 ? place - 1 : count - place);
    }
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    return places;
}

} // namespace

void addDailyOccurrences(const RuleParts& rule, bool isDate, RuleWindow& window) {
    const Periods periods(rule);
    const RuleDayFilter filter(rule, floor<days>(window.start()));
    const std::vector<seconds> times = timesOfDay(rule, isDate, window.start());
    const std::int64_t first = periods.numberOf(floor<days>(window.start()));
    const std::int64_t last = periods.numberOf(floor<days>(window.to()));
    const std::int64_t nearest = periods.numberOf(floor<days>(window.firstOfInterest()));
    std::vector<WallDay> allowed;
    for (std::int64_t number = nearest - (nearest - first) % rule.interval; number <= last; number += rule.interval) {
        const DaysOfPeriod period = periods.at(number);
        allowed.clear();
        for (WallDay day = period.begin; day < period.end; day += days(1))
            if (filter.allows(day)) allowed.push_back(day);
        const auto timeAt = [&](std::size_t place) {
            return allowed[place / times.size()] + times[place % times.size()];
        };
        const std::size_t count = allowed.size() * times.size();
        if (rule.positions.empty()) {
            for (std::size_t place = 0; place < count; ++place)
                if (!window.add(timeAt(place))) return;
        } else {
            for (const std::size_t place : selectedPlaces(rule.positions, count))
                if (!window.add(timeAt(place))) return;
        }
    }
}

} // namespace vesk::vdir
