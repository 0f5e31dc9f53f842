#include "VeskPlatform/Linux/Vdir/TodoComponent.hpp"

#include "VeskPlatform/Linux/Vdir/IcalReading.hpp"
#include "VeskSupport/Text.hpp"

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

/// What stands in a VTODO. Only what the library has to decode is left for it, in `rest`: it spends most of a listing
/// on alarms and on properties that a to-do does not show, and a good part on the simple ones (measured).
struct TodoLines {
    std::string rest;
    std::optional<std::string> status, completed, created, lastModified;

    /// The simple property of that name, none for all others.
    std::optional<std::string>* simple(std::string_view name) {
        if (name == "STATUS") return &status;
        if (name == "COMPLETED") return &completed;
        if (name == "CREATED") return &created;
        return name == "LAST-MODIFIED" ? &lastModified : nullptr;
    }
    void addProperty(std::string_view name, std::string_view line) {
        if (name == "SUMMARY" || name == "DESCRIPTION" || name == "DUE")
            rest += line;
        else if (auto* value = simple(name); value != nullptr && !*value)
            *value = propertyValue(line);
    }
};

TodoLines linesOf(std::string_view component) {
    TodoLines lines;
    int depth = 0;
    for (std::size_t at = 0; at < component.size();) {
        const std::string_view line = contentLineAt(component, at);
        at += line.size();
        const std::string name = propertyName(line);
        const bool begins = name == "BEGIN", ends = name == "END";
        if (ends) --depth;
        if ((begins || ends) && depth == 0) lines.rest += line;
        if (!begins && !ends && depth == 1) lines.addProperty(name, line);
        if (begins) ++depth;
    }
    return lines;
}

/// CREATED, LAST-MODIFIED and COMPLETED are in UTC (RFC 5545, section 3.8.7), whatever else they say.
std::optional<Instant> instantOf(const std::optional<std::string>& value) {
    const auto wall = value ? wallOf(icaltime_from_string(value->c_str())) : std::nullopt;
    return wall ? std::optional(Instant{wall->time_since_epoch()}) : std::nullopt;
}

bool isCompleted(const TodoLines& lines) {
    if (lines.completed && !icaltime_is_null_time(icaltime_from_string(lines.completed->c_str()))) return true;
    return lines.status && lowercased(*lines.status) == "completed";
}

} // namespace

std::optional<Reminder> parseTodo(const CalendarFile& file, const ScannedTodo& todo, Zones& zones) {
    const TodoLines lines = linesOf(todo.range.of(file.bytes));
    const std::string text = readableText(lines.rest);
    const IcalComponent parsed(icalparser_parse_string(text.c_str()));
    if (parsed == nullptr || icalcomponent_isa(parsed.get()) != ICAL_VTODO_COMPONENT) return std::nullopt;
    icalcomponent* component = parsed.get();
    Reminder reminder;
    reminder.identifier = todo.uid;
    reminder.title = firstText(component, ICAL_SUMMARY_PROPERTY);
    reminder.notes = firstText(component, ICAL_DESCRIPTION_PROPERTY);
    reminder.completed = isCompleted(lines);
    reminder.completionDate = instantOf(lines.completed);
    reminder.created = instantOf(lines.created);
    reminder.lastModified = instantOf(lines.lastModified);
    if (const auto due = firstTime(component, ICAL_DUE_PROPERTY))
        reminder.due = dueOf(*due, zoneFinder(file, zones), *zones.local());
    return reminder;
}

} // namespace vesk::vdir
