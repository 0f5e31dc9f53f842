#pragma once

#include "VeskSupport/Instant.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vesk::vdir {

enum class Frequency { yearly, monthly, weekly, daily, hourly, minutely, secondly };

/// The end that UNTIL sets.
struct RuleEnd {
    enum class Kind { date, local, utc };
    WallTime wall{};
    Kind kind = Kind::local;
};

/// A day of the week, 0 for Sunday, and its number within the month or year: 0 for every one, negative from the end.
struct RuleWeekday {
    int weekday = 0, number = 0;
};

/// The parts of an RRULE or EXRULE (RFC 5545, section 3.3.10). A missing BYxxx part is an empty list.
struct RuleParts {
    Frequency frequency = Frequency::daily;
    std::int64_t interval = 1;
    std::optional<std::int64_t> count;
    std::optional<RuleEnd> until;
    /// 0 for Sunday.
    int weekStart = 1;
    std::vector<int> months, weekNumbers, yearDays, monthDays, hours, minutes, seconds, positions;
    std::vector<RuleWeekday> weekdays;

    bool isBelowDay() const { return frequency >= Frequency::hourly; }
};

/// Reads the value of an RRULE or EXRULE; none where it is no valid one, or counts in another calendar than the
/// Gregorian one (RFC 7529).
std::optional<RuleParts> readRule(const std::string& text);

} // namespace vesk::vdir
