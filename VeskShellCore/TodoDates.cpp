#include "VeskShellCore/TodoDates.hpp"

#include "VeskShellCore/TodoError.hpp"
#include "VeskSupport/Iso8601.hpp"
#include "VeskSupport/Text.hpp"

#include <cstdio>

namespace vesk::VeskTodoOperations {
namespace {

using namespace std::chrono;

/// The wall time of components, where parts beyond their range carry over to the next greater part.
WallTime wallTime(const DueComponents& components) {
    const int months = components.month.value_or(1) - 1;
    const int carriedYears = months >= 0 ? months / 12 : -((11 - months) / 12);
    const year y{components.year.value_or(1) + carriedYears};
    const month m{static_cast<unsigned>(months - carriedYears * 12 + 1)};
    return local_days{y / m / 1} + days(components.day.value_or(1) - 1) + hours(components.hour.value_or(0))
           + minutes(components.minute.value_or(0)) + seconds(components.second.value_or(0));
}

DueComponents dateComponents(WallDay day, const TodoClock& clock) {
    const year_month_day date{day};
    DueComponents result;
    result.year = static_cast<int>(date.year());
    result.month = static_cast<int>(static_cast<unsigned>(date.month()));
    result.day = static_cast<int>(static_cast<unsigned>(date.day()));
    result.timeZone = clock.calendar.zoneIdentifier();
    return result;
}

DueComponents components(WallTime wall, const TodoClock& clock) {
    const WallDay day = floor<days>(wall);
    DueComponents result = dateComponents(day, clock);
    const hh_mm_ss time{wall - day};
    result.hour = static_cast<int>(time.hours().count());
    result.minute = static_cast<int>(time.minutes().count());
    result.second = static_cast<int>(time.seconds().count());
    return result;
}

std::optional<Instant> parseInstant(std::string_view text) {
    if (const auto instant = parseInternetDateTime(text, FractionalSeconds::required)) return instant;
    return parseInternetDateTime(text, FractionalSeconds::refused);
}

std::optional<WallTime> parseWall(std::string_view text) {
    if (const auto wall = parseWallTime(text, ' ', false)) return wall;
    return parseWallTime(text, 'T', false);
}

} // namespace

TodoClock::TodoClock(LocalCalendar currentCalendar, const std::string& locale, Instant currentTime)
    : calendar(std::move(currentCalendar)), display(locale, calendar.zoneIdentifier()), now(currentTime),
      dayStart(calendar.startOfDay(now)), dayEnd(calendar.addDays(dayStart, 1)) {}

Instant dueDate(const DueComponents& components, const TodoClock& clock) {
    const WallTime wall = wallTime(components);
    const bool isCurrentZone = !components.timeZone || *components.timeZone == clock.calendar.zoneIdentifier();
    return isCurrentZone ? clock.calendar.instant(wall) : LocalCalendar(*components.timeZone).instant(wall);
}

std::string dueIsoString(const DueComponents& components) {
    char text[96];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", components.year.value_or(0), components.month.value_or(0),
                  components.day.value_or(0));
    std::string result = text;
    if (!components.hour || !components.minute) return result;
    std::snprintf(text, sizeof text, "T%02d:%02d", *components.hour, *components.minute);
    return result + text;
}

CapabilityTodoDuePayload duePayload(const DueComponents& components, const TodoClock& clock) {
    CapabilityTodoDuePayload payload;
    payload.iso = dueIsoString(components);
    payload.hasTime = components.hour.has_value() || components.minute.has_value();
    payload.local =
        clock.display.text(dueDate(components, clock), payload.hasTime ? DisplayTime::shortStyle : DisplayTime::none);
    return payload;
}

DueStanding dueStanding(const Reminder& reminder, const TodoClock& clock) {
    const Instant due = dueDate(reminder.due.value_or(DueComponents{}), clock);
    const bool dueToday = clock.isToday(due);
    return {due, dueToday, !reminder.completed && due < clock.now && !dueToday};
}

bool isDueToday(const Reminder& reminder, const TodoClock& clock) { return dueStanding(reminder, clock).dueToday; }

bool isOverdue(const Reminder& reminder, const TodoClock& clock) { return dueStanding(reminder, clock).overdue; }

DueComponents parseDue(const std::string& text, const TodoClock& clock) {
    const std::string_view kept = trimmed(text);
    if (const auto instant = parseInstant(kept)) return components(clock.calendar.wallTime(*instant), clock);
    if (const auto wall = parseWall(kept); wall && clock.calendar.meaning(*wall).kind != WallTimeKind::skipped) {
        DueComponents result = components(*wall, clock);
        result.second.reset();
        return result;
    }
    if (const auto day = parseWallDay(kept)) return dateComponents(*day, clock);
    throw TodoError(TodoError::Code::argumentInvalid,
                    "Invalid due value: " + text
                        + ". Use YYYY-MM-DD, YYYY-MM-DD HH:MM, YYYY-MM-DDTHH:MM, or ISO 8601.");
}

} // namespace vesk::VeskTodoOperations
