#include "VeskPlatform/Linux/Vdir/TodoComponent.hpp"

#include "VeskPlatform/Linux/Vdir/IcalReading.hpp"

#include <algorithm>
#include <array>

namespace vesk::vdir {
namespace {

using namespace std::chrono;

DueComponents componentsOf(WallTime wall, bool hasTime) {
    const local_days day = floor<days>(wall);
    const year_month_day date{day};
    const hh_mm_ss time{wall - day};
    DueComponents due;
    due.year = static_cast<int>(date.year());
    due.month = static_cast<int>(static_cast<unsigned>(date.month()));
    due.day = static_cast<int>(static_cast<unsigned>(date.day()));
    if (!hasTime) return due;
    due.hour = static_cast<int>(time.hours().count());
    due.minute = static_cast<int>(time.minutes().count());
    due.second = static_cast<int>(time.seconds().count());
    return due;
}

DueComponents dueOf(const EventTime& time, const ZoneFinder& zoneOf, const LocalCalendar& local) {
    if (time.isDate() || time.anchor == EventTime::Anchor::floating) return componentsOf(time.wall, !time.isDate());
    const Zone zone = zoneOf(time);
    const bool isLocal = zone->zoneIdentifier() == local.zoneIdentifier();
    DueComponents due = componentsOf(isLocal ? time.wall : local.wallTime(zone->instant(time.wall)), true);
    due.timeZone = local.zoneIdentifier();
    return due;
}

/// CREATED, LAST-MODIFIED and COMPLETED are in UTC (RFC 5545, section 3.8.7), whatever else they say.
std::optional<Instant> firstInstant(icalcomponent* component, icalproperty_kind kind) {
    const auto time = firstTime(component, kind);
    return time ? std::optional(Instant{time->wall.time_since_epoch()}) : std::nullopt;
}

bool isCompleted(icalcomponent* todo) {
    if (icalcomponent_get_first_property(todo, ICAL_COMPLETED_PROPERTY) != nullptr) return true;
    icalproperty* status = icalcomponent_get_first_property(todo, ICAL_STATUS_PROPERTY);
    return status != nullptr && icalproperty_get_status(status) == ICAL_STATUS_COMPLETED;
}

bool isShown(std::string_view name) {
    constexpr std::array names{"SUMMARY", "DESCRIPTION", "DUE", "STATUS", "COMPLETED", "CREATED", "LAST-MODIFIED"};
    return std::ranges::find(names, name) != names.end();
}

/// The VTODO with the properties that a to-do shows. The library spends most of a listing on the others (measured), and
/// on the alarms.
std::string shownPart(std::string_view component) {
    std::string text;
    int depth = 0;
    for (std::size_t at = 0; at < component.size();) {
        const std::string_view line = contentLineAt(component, at);
        const std::string name = propertyName(line);
        const bool begins = name == "BEGIN", ends = name == "END";
        if (ends) --depth;
        if (begins || ends ? depth == 0 : depth == 1 && isShown(name)) text += line;
        if (begins) ++depth;
        at += line.size();
    }
    return text;
}

} // namespace

std::optional<Reminder> parseTodo(const CalendarFile& file, const ScannedTodo& todo, Zones& zones) {
    const std::string text = readableText(shownPart(todo.range.of(file.bytes)));
    const IcalComponent parsed(icalparser_parse_string(text.c_str()));
    if (parsed == nullptr || icalcomponent_isa(parsed.get()) != ICAL_VTODO_COMPONENT) return std::nullopt;
    icalcomponent* component = parsed.get();
    Reminder reminder;
    reminder.identifier = todo.uid;
    reminder.title = firstText(component, ICAL_SUMMARY_PROPERTY);
    reminder.notes = firstText(component, ICAL_DESCRIPTION_PROPERTY);
    reminder.completed = isCompleted(component);
    reminder.completionDate = firstInstant(component, ICAL_COMPLETED_PROPERTY);
    reminder.created = firstInstant(component, ICAL_CREATED_PROPERTY);
    reminder.lastModified = firstInstant(component, ICAL_LASTMODIFIED_PROPERTY);
    if (const auto due = firstTime(component, ICAL_DUE_PROPERTY))
        reminder.due = dueOf(*due, zoneFinder(file, zones), *zones.local());
    return reminder;
}

} // namespace vesk::vdir
