#include "VeskPlatform/Linux/Vdir/TodoEdit.hpp"

#include "VeskPlatform/Linux/Vdir/ComponentEditor.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/LocalCalendar.hpp"

#include <algorithm>
#include <array>
#include <cstdio>

namespace vesk::vdir {
namespace {

using namespace std::chrono;

std::string dateText(WallTime wall) {
    const year_month_day date{floor<days>(wall)};
    char text[32];
    std::snprintf(text, sizeof text, "%04d%02u%02u", static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()));
    return text;
}

std::string dateTimeText(WallTime wall) {
    const hh_mm_ss time{wall - floor<days>(wall)};
    char text[32];
    std::snprintf(text, sizeof text, "T%02d%02d%02d", static_cast<int>(time.hours().count()),
                  static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()));
    return dateText(wall) + text;
}

std::string utcText(Instant instant) {
    return dateTimeText(WallTime{floor<seconds>(instant).time_since_epoch()}) + "Z";
}

bool hasTime(const DueComponents& due) { return due.hour.has_value() || due.minute.has_value(); }

WallTime wallOf(const DueComponents& due) {
    const year_month_day date{year{due.year.value_or(0)}, month{static_cast<unsigned>(due.month.value_or(0))},
                              day{static_cast<unsigned>(due.day.value_or(0))}};
    const int hour = due.hour.value_or(0), minute = due.minute.value_or(0), second = due.second.value_or(0);
    const bool isTime = hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 60;
    if (!date.ok() || !isTime || due.year.value_or(0) < 1 || due.year.value_or(0) > 9999)
        throw ErrorRecord("VdirReminderStore", 400, "The to-do's due date cannot be written.");
    return local_days{date} + hours(hour) + minutes(minute) + seconds(second);
}

/// The same date and time, however it was told: seconds may be left out, and a plain date has no zone.
bool isSameDue(const std::optional<DueComponents>& a, const std::optional<DueComponents>& b) {
    if (!a || !b) return a.has_value() == b.has_value();
    if (hasTime(*a) != hasTime(*b)) return false;
    const auto key = [](const DueComponents& due) {
        return std::array{due.year,
                          due.month,
                          due.day,
                          std::optional(due.hour.value_or(0)),
                          std::optional(due.minute.value_or(0)),
                          std::optional(due.second.value_or(0))};
    };
    return key(*a) == key(*b) && (!hasTime(*a) || a->timeZone == b->timeZone);
}

bool isUtc(const LocalCalendar& zone) {
    constexpr std::array names{"UTC", "Etc/UTC", "GMT",       "Etc/GMT",      "Z", "Zulu", "Etc/Zulu",
                               "UCT", "Etc/UCT", "Universal", "Etc/Universal"};
    return std::ranges::find(names, zone.zoneIdentifier()) != names.end();
}

/// The zone definition that a file needs beside the due date.
struct NeededZone {
    std::string tzid, definition;
};

/// Sets DUE: a date, a time of the to-do's zone, or UTC where that zone is UTC or the wall time exists twice. The zone
/// it refers to is returned.
std::optional<NeededZone> setDue(ComponentEditor& editor, const DueComponents& due) {
    const WallTime wall = wallOf(due);
    editor.remove("DURATION"); // never stands beside DUE (RFC 5545, section 3.6.2)
    if (!hasTime(due)) {
        editor.set("DUE", dateText(wall), ";VALUE=DATE");
        return std::nullopt;
    }
    if (!due.timeZone) {
        editor.set("DUE", dateTimeText(wall));
        return std::nullopt;
    }
    const LocalCalendar zone(*due.timeZone);
    const Instant instant = zone.instant(wall);
    if (isUtc(zone) || zone.meaning(wall).kind == WallTimeKind::repeated) {
        editor.set("DUE", utcText(instant));
        return std::nullopt;
    }
    // A POSIX rule holds commas, which a parameter's value has only within quotation marks.
    const std::string& tzid = zone.zoneIdentifier();
    const bool isPlain = tzid.find_first_of(",;:") == std::string::npos;
    editor.set("DUE", dateTimeText(wall), ";TZID=" + (isPlain ? tzid : "\"" + tzid + "\""));
    return NeededZone{tzid, zone.vTimeZoneText(instant)};
}

void setText(ComponentEditor& editor, const std::string& name, const std::optional<std::string>& text) {
    if (text)
        editor.set(name, escapedText(*text));
    else
        editor.remove(name);
}

void setCompletion(ComponentEditor& editor, const Reminder& wanted, Instant now) {
    if (!wanted.completed) {
        editor.set("STATUS", "NEEDS-ACTION");
        editor.remove("COMPLETED");
        editor.remove("PERCENT-COMPLETE");
        return;
    }
    editor.set("STATUS", "COMPLETED");
    editor.set("COMPLETED", utcText(wanted.completionDate.value_or(now)));
    editor.set("PERCENT-COMPLETE", "100");
}

bool completionDiffers(const Reminder& given, const Reminder& current, const Reminder& wanted) {
    if (wanted.completed != given.completed) return true;
    if (!wanted.completed) return false;
    const bool isUndated = !wanted.completionDate && !current.completionDate;
    return isUndated || (wanted.completionDate && wanted.completionDate != given.completionDate);
}

std::string withLineEnds(std::string_view text, std::string_view lineEnd) {
    std::string result;
    for (const char c : text) {
        if (c == '\n')
            result += lineEnd;
        else if (c != '\r')
            result += c;
    }
    if (!result.empty() && !result.ends_with('\n')) result += lineEnd;
    return result;
}

/// The definition as the file needs it before the component that refers to it; empty where it has it already.
std::string missingZone(const CalendarFile& file, const NeededZone& needed) {
    const bool isThere =
        std::ranges::find(file.scanned.zones, needed.tzid, &ScannedZone::tzid) != file.scanned.zones.end();
    return isThere ? "" : withLineEnds(needed.definition, lineEndOf(file.bytes));
}

} // namespace

std::string newTodoText(const Reminder& reminder, const std::string& uid, Instant now) {
    ComponentEditor editor("BEGIN:VTODO\r\nEND:VTODO\r\n");
    editor.set("UID", uid);
    for (const char* name : {"DTSTAMP", "CREATED", "LAST-MODIFIED"}) editor.set(name, utcText(now));
    setText(editor, "SUMMARY", reminder.title);
    setText(editor, "DESCRIPTION", reminder.notes);
    std::optional<NeededZone> zone;
    if (reminder.due) zone = setDue(editor, *reminder.due);
    if (reminder.completed)
        setCompletion(editor, reminder, now);
    else
        editor.set("STATUS", "NEEDS-ACTION");
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Vesk//VeskShellCore//EN\r\n"
           + (zone ? withLineEnds(zone->definition, "\r\n") : "") + editor.text() + "END:VCALENDAR\r\n";
}

std::string editedTodoText(const CalendarFile& file, const ScannedTodo& todo, const Reminder& given,
                           const Reminder& current, const Reminder& wanted, Instant now) {
    ComponentEditor editor(todo.range.of(file.bytes));
    const std::string before = editor.text();
    std::optional<NeededZone> zone;
    if (wanted.title != given.title) setText(editor, "SUMMARY", wanted.title);
    if (wanted.notes != given.notes) setText(editor, "DESCRIPTION", wanted.notes);
    if (!isSameDue(wanted.due, given.due)) {
        if (wanted.due)
            zone = setDue(editor, *wanted.due);
        else
            editor.remove("DUE");
    }
    if (completionDiffers(given, current, wanted)) setCompletion(editor, wanted, now);
    if (editor.text() == before) return file.bytes;
    editor.set("DTSTAMP", utcText(now));
    editor.set("LAST-MODIFIED", utcText(now));
    std::string result = file.bytes;
    result.replace(todo.range.begin, todo.range.end - todo.range.begin,
                   (zone ? missingZone(file, *zone) : "") + editor.text());
    return result;
}

std::string textWithoutTodo(const CalendarFile& file, const std::string& uid) {
    std::string result = file.bytes;
    for (auto todo = file.scanned.todos.rbegin(); todo != file.scanned.todos.rend(); ++todo)
        if (todo->uid == uid) result.erase(todo->range.begin, todo->range.end - todo->range.begin);
    return result;
}

} // namespace vesk::vdir
