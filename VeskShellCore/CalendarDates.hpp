#pragma once

#include "VeskSupport/Instant.hpp"
#include "VeskSupport/LocalCalendar.hpp"

#include <optional>
#include <string>

// The dates and times that a user types for the calendar. Each reader trims its text and throws CalendarError (400),
// naming the text as it was given to the reader that refused it. Digits stand exactly as in the pattern. A time without
// an offset is one of `calendar`: inside a daylight-saving gap it is invalid, of a repeated one the later is meant.

namespace vesk::VeskCalendarOperations {

/// `yyyy-MM-dd`, as the start of that day.
Instant parseCalendarDate(const std::string& text, const LocalCalendar& calendar);

/// `yyyy-MM-dd HH:mm`, the same with seconds, each with a "T" in the place of the blank, or the internet date-time with
/// an offset or "Z" and with or without a fraction.
Instant parseDateTime(const std::string& text, const LocalCalendar& calendar);

/// A date, or the day of a date and time, as the start of that day.
Instant parseAllDayDateBoundary(const std::string& text, const LocalCalendar& calendar);

/// The end of an event: `endAt`, which must be later than `start`, or an hour after it where `endAt` is blank.
Instant resolveEndDate(Instant start, const std::optional<std::string>& endAt, const LocalCalendar& calendar);

/// The exclusive end of an all-day event: `endAt`, or the next day where it is blank or the day of `start` itself.
Instant resolveAllDayEndDate(Instant start, const std::optional<std::string>& endAt, const LocalCalendar& calendar);

} // namespace vesk::VeskCalendarOperations
