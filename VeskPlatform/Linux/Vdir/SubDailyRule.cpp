#include "VeskPlatform/Linux/Vdir/SubDailyRule.hpp"

#include "VeskPlatform/Linux/Vdir/RuleDayFilter.hpp"

#include <algorithm>
#include <bitset>

namespace vesk::vdir {
namespace {

using namespace std::chrono;

constexpr std::int64_t secondsOfDay = 86400;

std::int64_t floorDivide(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

/// A part that is as coarse as the frequency or coarser leaves values out.
class Allowed {
public:
    explicit Allowed(const std::vector<int>& list) : all_(list.empty()) {
        for (const int value : list) values_.set(static_cast<std::size_t>(std::clamp(value, 0, 61)));
    }
    bool contains(std::int64_t value) const { return all_ || values_[static_cast<std::size_t>(value)]; }

private:
    bool all_;
    std::bitset<62> values_;
};

std::int64_t unitOf(Frequency frequency) {
    return frequency == Frequency::hourly ? 3600 : frequency == Frequency::minutely ? 60 : 1;
}

/// The seconds within one step that the rule gives, ascending: a finer part expands, where it is missing, the start's
/// own value stands; BYSETPOS chooses.
std::vector<std::int64_t> timesWithinStep(const RuleParts& rule, WallTime start) {
    const std::int64_t unit = unitOf(rule.frequency);
    const hh_mm_ss time{start - floor<days>(start)};
    std::vector<int> minuteList = rule.minutes, secondList = rule.seconds;
    if (minuteList.empty()) minuteList = {static_cast<int>(time.minutes().count())};
    if (unit < 3600) minuteList = {0};
    if (secondList.empty()) secondList = {static_cast<int>(time.seconds().count())};
    if (unit < 60) secondList = {0};
    std::vector<std::int64_t> all;
    for (const int m : minuteList)
        for (const int s : secondList) all.push_back(m * 60 + std::min(s, 59)); // a leap second is its minute's last
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    if (rule.positions.empty()) return all;
    std::vector<std::int64_t> chosen;
    const int count = static_cast<int>(all.size());
    for (int i = 0; i < count; ++i) {
        const auto is = [i, count](int position) { return position == i + 1 || position == i - count; };
        if (std::any_of(rule.positions.begin(), rule.positions.end(), is))
            chosen.push_back(all[static_cast<std::size_t>(i)]);
    }
    return chosen;
}

/// The steps of the rule, every `interval` hours, minutes or seconds from the start on.
class Steps {
public:
    Steps(const RuleParts& rule, WallTime start)
        : unit_(unitOf(rule.frequency)), stride_(rule.interval * unit_),
          first_(floorDivide(start.time_since_epoch().count(), unit_) * unit_), hours_(rule.hours),
          minutes_(unit_ <= 60 ? rule.minutes : std::vector<int>{}),
          seconds_(unit_ == 1 ? rule.seconds : std::vector<int>{}), within_(timesWithinStep(rule, start)) {
        if (stride_ < secondsOfDay) counts_.assign(static_cast<std::size_t>(rule.interval), unknown);
    }

    /// The second of the day, not before the start's, at which the day's first step lies; beyond the day where it has
    /// none.
    std::int64_t firstOf(WallDay day) const {
        const std::int64_t begin = WallTime{day}.time_since_epoch().count();
        if (begin <= first_) return first_ - begin;
        return (stride_ - (begin - first_) % stride_) % stride_;
    }

    /// How many times a day has whose first step lies at that second.
    std::int64_t countFrom(std::int64_t firstSecond) {
        if (firstSecond >= secondsOfDay) return 0;
        const auto place = static_cast<std::size_t>(firstSecond / unit_);
        if (place >= counts_.size()) return counted(firstSecond); // the start's own day, or one step in several days
        std::int64_t& known = counts_[place];
        if (known == unknown) known = counted(firstSecond);
        return known;
    }

    /// Calls `visit` with each time of the day, ascending; false where `visit` returned false.
    template <class Visit> bool forEach(WallDay day, std::int64_t firstSecond, Visit visit) const {
        for (std::int64_t step = firstSecond; step < secondsOfDay; step += stride_) {
            if (!allows(step)) continue;
            for (const std::int64_t second : within_)
                if (!visit(WallTime{day} + seconds(step + second))) return false;
        }
        return true;
    }

private:
    static constexpr std::int64_t unknown = -1;

    bool allows(std::int64_t step) const {
        return hours_.contains(step / 3600) && minutes_.contains(step / 60 % 60) && seconds_.contains(step % 60);
    }

    std::int64_t counted(std::int64_t firstSecond) const {
        std::int64_t steps = 0;
        for (std::int64_t step = firstSecond; step < secondsOfDay; step += stride_) steps += allows(step) ? 1 : 0;
        return steps * static_cast<std::int64_t>(within_.size());
    }

    std::int64_t unit_, stride_, first_;
    Allowed hours_, minutes_, seconds_;
    std::vector<std::int64_t> within_;
    std::vector<std::int64_t> counts_;
};

} // namespace

void addSubDailyOccurrences(const RuleParts& rule, RuleWindow& window) {
    const WallDay startDay = floor<days>(window.start());
    const RuleDayFilter filter(rule, startDay);
    Steps steps(rule, window.start());
    const auto add = [&](WallTime wall) { return window.add(wall); };
    WallDay day = floor<days>(window.firstOfInterest());
    for (; WallTime{day} <= window.to(); day += days(1)) {
        if (!filter.allows(day)) continue;
        const std::int64_t first = steps.firstOf(day);
        const std::int64_t count = steps.countFrom(first);
        if (count == 0) continue;
        if (!(window.onlyCounts(day) ? window.skip(count) : steps.forEach(day, first, add))) return;
    }
}

} // namespace vesk::vdir
