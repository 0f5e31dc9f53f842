#include "VeskShellCore/CalendarDates.hpp"

#include "VeskShellCore/CalendarError.hpp"
#include "VeskSupport/Iso8601.hpp"
#include "VeskSupport/Text.hpp"

namespace vesk::VeskCalendarOperations {
namespace {

using namespace std::chrono_literals;

[[noreturn]] void failInvalid(std::string description) {
    throw CalendarError(CalendarError::Code::argumentInvalid, std::move(description));
}

std::optional<WallTime> parseAnyWallTime(std::string_view text) {
    for (const bool withSeconds : {false, true})
        for (const char separator : {' ', 'T'})
            if (const auto wall = parseWallTime(text, separator, withSeconds)) return wall;
    return std::nullopt;
}

std::optional<Instant> instantOf(WallTime wall, const LocalCalendar& calendar) {
    const WallTimeMeaning meaning = calendar.meaning(wall);
    if (meaning.kind == WallTimeKind::skipped) return std::nullopt;
    return meaning.later;
}

std::optional<Instant> parseAnyDateTime(std::string_view text, const LocalCalendar& calendar) {
    if (const auto wall = parseAnyWallTime(text)) return instantOf(*wall, calendar);
    if (const auto instant = parseInternetDateTime(text, FractionalSeconds::required)) return instant;
    return parseInternetDateTime(text, FractionalSeconds::refused);
}

} // namespace

Instant parseCalendarDate(const std::string& text, const LocalCalendar& calendar) {
    const auto day = parseWallDay(trimmed(text));
    if (!day) failInvalid("Invalid date: " + text + ". Expected YYYY-MM-DD.");
    return calendar.startOfDay(*day);
}

Instant parseDateTime(const std::string& text, const LocalCalendar& calendar) {
    const std::string_view kept = trimmed(text);
    if (kept.empty()) failInvalid("Event start time is required.");
    const auto instant = parseAnyDateTime(kept, calendar);
    if (!instant)
        failInvalid("Invalid date/time: " + text + ". Use YYYY-MM-DD HH:MM, YYYY-MM-DDTHH:MM, or full ISO 8601.");
    return *instant;
}

Instant parseAllDayDateBoundary(const std::string& text, const LocalCalendar& calendar) {
    // Digits of any script choose the date's message, though only ASCII ones make a date.
    const std::string kept(trimmed(text));
    if (matchesDigitPattern(kept, "0000-00-00")) return parseCalendarDate(kept, calendar);
    return calendar.startOfDay(parseDateTime(kept, calendar));
}

Instant resolveEndDate(Instant start, const std::optional<std::string>& endAt, const LocalCalendar& calendar) {
    const auto text = trimmedOrAbsent(endAt);
    if (!text) return start + 1h;
    const Instant end = parseDateTime(*text, calendar);
    if (end <= start) failInvalid("Event end time must be after the start time.");
    return end;
}

Instant resolveAllDayEndDate(Instant start, const std::optional<std::string>& endAt, const LocalCalendar& calendar) {
    const auto text = trimmedOrAbsent(endAt);
    if (!text) return calendar.addDays(start, 1);
    const Instant end = parseAllDayDateBoundary(*text, calendar);
    if (end > start) return end;
    if (end == start) return calendar.addDays(start, 1);
    failInvalid("All-day event end date must be after the start date.");
}

} // namespace vesk::VeskCalendarOperations
