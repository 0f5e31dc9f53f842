#include "VeskPlatform/Linux/Vdir/RuleParts.hpp"

#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <libical/ical.h>
#include <string_view>

namespace vesk::vdir {
namespace {

using namespace std::chrono;

/// No wall has room for more steps or occurrences, so that larger numbers change nothing.
constexpr std::int64_t largestNumber = 400'000'000'000;

std::optional<Frequency> frequencyOf(icalrecurrencetype_frequency frequency) {
    switch (frequency) {
    case ICAL_YEARLY_RECURRENCE: return Frequency::yearly;
    case ICAL_MONTHLY_RECURRENCE: return Frequency::monthly;
    case ICAL_WEEKLY_RECURRENCE: return Frequency::weekly;
    case ICAL_DAILY_RECURRENCE: return Frequency::daily;
    case ICAL_HOURLY_RECURRENCE: return Frequency::hourly;
    case ICAL_MINUTELY_RECURRENCE: return Frequency::minutely;
    case ICAL_SECONDLY_RECURRENCE: return Frequency::secondly;
    case ICAL_NO_RECURRENCE: break;
    }
    return std::nullopt;
}

/// A rule's text with the parts taken out that are read here.
struct RuleText {
    std::optional<std::string_view> interval, count;
    bool hasUntil = false;
    std::string rest;
};

/// Whether `part` is the one named so, case aside; `name` is in upper case and ends in "=".
bool isPart(std::string_view part, std::string_view name) {
    const auto same = [](char wanted, char c) { return wanted == (c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c); };
    return part.size() >= name.size() && std::equal(name.begin(), name.end(), part.begin(), same);
}

RuleText ruleText(std::string_view text) {
    constexpr std::string_view intervalName = "INTERVAL=", countName = "COUNT=";
    RuleText result;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(';'), text.size());
        const std::string_view part = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (isPart(part, intervalName)) {
            result.interval = part.substr(intervalName.size());
        } else if (isPart(part, countName)) {
            result.count = part.substr(countName.size());
        } else if (!part.empty()) {
            result.hasUntil = result.hasUntil || isPart(part, "UNTIL=");
            if (!result.rest.empty()) result.rest += ';';
            result.rest += part;
        }
    }
    return result;
}

/// A positive number, cut off at `largestNumber`. The library keeps INTERVAL in 16 bits (65537 becomes 1, measured) and
/// takes no COUNT beyond 31.
std::optional<std::int64_t> positiveNumber(std::string_view digits) {
    std::int64_t number = 0;
    for (const char c : trimmed(digits)) {
        if (c < '0' || c > '9') return std::nullopt;
        number = std::min(number * 10 + (c - '0'), largestNumber);
    }
    return number > 0 ? std::optional(number) : std::nullopt;
}

/// The values of one BYxxx part, as the library stores them: up to a marker.
std::vector<int> values(const short* list, std::size_t capacity) {
    std::vector<int> result;
    for (std::size_t i = 0; i < capacity && list[i] != ICAL_RECURRENCE_ARRAY_MAX; ++i) result.push_back(list[i]);
    return result;
}

std::vector<RuleWeekday> weekdaysOf(const icalrecurrencetype& rule) {
    std::vector<RuleWeekday> result;
    for (const int encoded : values(rule.by_day, ICAL_BY_DAY_SIZE)) {
        const auto day = static_cast<short>(encoded);
        result.push_back(
            {icalrecurrencetype_day_day_of_week(day) - ICAL_SUNDAY_WEEKDAY, icalrecurrencetype_day_position(day)});
    }
    return result;
}

std::optional<RuleEnd> endOf(const icaltimetype& until) {
    const year_month_day date{year{until.year}, month{static_cast<unsigned>(until.month)},
                              day{static_cast<unsigned>(until.day)}};
    if (until.year < 0 || until.year > 9999 || !date.ok()) return std::nullopt;
    if (until.is_date != 0) return RuleEnd{local_days{date}, RuleEnd::Kind::date};
    return RuleEnd{local_days{date} + hours(until.hour) + minutes(until.minute) + seconds(until.second),
                   icaltime_is_utc(until) != 0 ? RuleEnd::Kind::utc : RuleEnd::Kind::local};
}

/// The library gives the calendar's name away (measured: nothing else frees it).
struct LibraryRule {
    explicit LibraryRule(const std::string& text) : parts(icalrecurrencetype_from_string(text.c_str())) {}
    LibraryRule(const LibraryRule&) = delete;
    LibraryRule& operator=(const LibraryRule&) = delete;
    ~LibraryRule() { icalmemory_free_buffer(parts.rscale); }

    bool isGregorian() const {
        const std::string_view scale = parts.rscale == nullptr ? "" : parts.rscale;
        return (scale.empty() || scale == "GREGORIAN") && parts.skip != ICAL_SKIP_BACKWARD
               && parts.skip != ICAL_SKIP_FORWARD;
    }

    icalrecurrencetype parts;
};

} // namespace

std::optional<RuleParts> readRule(const std::string& text) {
    const RuleText given = ruleText(text);
    const LibraryRule read(given.rest);
    const icalrecurrencetype& rule = read.parts;
    const auto frequency = frequencyOf(rule.freq);
    if (!frequency || !read.isGregorian()) return std::nullopt;
    RuleParts parts;
    parts.frequency = *frequency;
    if (given.interval) {
        const auto number = positiveNumber(*given.interval);
        if (!number) return std::nullopt;
        parts.interval = *number;
    }
    if (given.count) {
        parts.count = positiveNumber(*given.count);
        if (!parts.count) return std::nullopt;
    }
    if (given.hasUntil) {
        parts.until = endOf(rule.until);
        if (!parts.until) return std::nullopt;
    }
    if (rule.week_start != ICAL_NO_WEEKDAY) parts.weekStart = rule.week_start - ICAL_SUNDAY_WEEKDAY;
    parts.months = values(rule.by_month, ICAL_BY_MONTH_SIZE);
    parts.weekNumbers = values(rule.by_week_no, ICAL_BY_WEEKNO_SIZE);
    parts.yearDays = values(rule.by_year_day, ICAL_BY_YEARDAY_SIZE);
    parts.monthDays = values(rule.by_month_day, ICAL_BY_MONTHDAY_SIZE);
    parts.weekdays = weekdaysOf(rule);
    parts.hours = values(rule.by_hour, ICAL_BY_HOUR_SIZE);
    parts.minutes = values(rule.by_minute, ICAL_BY_MINUTE_SIZE);
    parts.seconds = values(rule.by_second, ICAL_BY_SECOND_SIZE);
    parts.positions = values(rule.by_set_pos, ICAL_BY_SETPOS_SIZE);
    return parts;
}

} // namespace vesk::vdir
