#include "tests/VeskPlatform/Linux/Vdir/CalendarText.hpp"

#include <charconv>
#include <cstdio>

namespace vesk::test {

using namespace std::chrono;
using namespace vdir;

namespace {

std::string withCarriageReturns(std::string_view lines) {
    std::string result;
    for (const char c : lines) {
        if (c == '\n') result += '\r';
        result += c;
    }
    return result;
}

int number(std::string_view text, std::size_t at, std::size_t count) {
    int n = 0;
    std::from_chars(text.data() + at, text.data() + at + count, n);
    return n;
}

std::string spanOf(const Occurrence& occurrence, const LocalCalendar& zone) {
    std::string text = written(zone.wallTime(occurrence.start)) + "/" + written(zone.wallTime(occurrence.end));
    if (occurrence.component->summary) text += " " + *occurrence.component->summary;
    return text;
}

} // namespace

CalendarText::CalendarText(std::string text, const std::string& localZone)
    : zones_(std::make_shared<LocalCalendar>(localZone), [this](const std::string& line) { logged_.push_back(line); }) {
    file_.bytes = std::move(text);
    file_.scanned = scanCalendarText(file_.bytes);
}

std::vector<EventComponent> CalendarText::components(std::size_t item) const {
    return parseItem(file_, item, userAddresses);
}

std::vector<std::string> CalendarText::occurrences(std::string_view from, std::string_view to,
                                                   const std::string& wallZone) {
    const LocalCalendar zone(wallZone);
    std::vector<std::string> result;
    for (std::size_t item = 0; item < file_.scanned.items.size(); ++item) {
        const auto parsed = components(item);
        const auto found =
            occurrencesOf(parsed, zone.instant(wall(from)), zone.instant(wall(to)), zoneFinder(file_, zones_));
        for (const Occurrence& occurrence : found.occurrences) result.push_back(spanOf(occurrence, zone));
    }
    return result;
}

std::string CalendarText::first(const std::string& wallZone) {
    const auto parsed = components();
    const auto found = firstOccurrence(parsed, zoneFinder(file_, zones_));
    return found ? spanOf(*found, LocalCalendar(wallZone)) : "none";
}

std::string calendar(std::string_view components) {
    return withCarriageReturns("BEGIN:VCALENDAR\nVERSION:2.0\n" + std::string(components) + "END:VCALENDAR\n");
}

std::string event(std::string_view lines) { return "BEGIN:VEVENT\n" + std::string(lines) + "END:VEVENT\n"; }

std::string calendarOfEvent(std::string_view lines) { return calendar(event(lines)); }

WallTime wall(std::string_view text) {
    const year_month_day date{year{number(text, 0, 4)}, month{static_cast<unsigned>(number(text, 4, 2))},
                              day{static_cast<unsigned>(number(text, 6, 2))}};
    const WallTime midnight = local_days{date};
    if (text.size() < 15) return midnight;
    return midnight + hours(number(text, 9, 2)) + minutes(number(text, 11, 2)) + seconds(number(text, 13, 2));
}

std::string written(WallTime wall) {
    const local_days day = floor<days>(wall);
    const year_month_day date{day};
    const hh_mm_ss time{wall - day};
    char text[40];
    std::snprintf(text, sizeof text, "%04d%02u%02uT%02d%02d%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text;
}

} // namespace vesk::test
