#include "VeskShellCore/CalendarSelection.hpp"

#include "VeskShellCore/CalendarPayloads.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <set>

namespace vesk::VeskCalendarOperations {
namespace {

std::string comparable(const std::string& title) { return lowercased(trimmed(title)); }

bool comesBefore(const CalendarEvent& a, const CalendarEvent& b) {
    if (a.start != b.start) return a.start < b.start;
    // Bytes of UTF-8 sort as their code points do.
    if (const int order = a.calendar->title.compare(b.calendar->title); order != 0) return order < 0;
    return normalizedTitle(a) < normalizedTitle(b);
}

} // namespace

std::vector<EventCalendar> eligibleCalendars(EventStore& store) {
    std::vector<EventCalendar> calendars = store.calendars();
    std::erase_if(calendars, [](const EventCalendar& calendar) {
        return comparable(calendar.title).find("holiday") != std::string::npos;
    });
    return calendars;
}

std::optional<EventCalendar> findCalendar(const std::string& name, const std::vector<EventCalendar>& calendars,
                                          LocaleSettings& locale) {
    const auto exact = std::ranges::find(calendars, name, &EventCalendar::title);
    if (exact != calendars.end()) return *exact;
    const CaseInsensitiveCollator collator(locale.locale());
    const auto similar = std::ranges::find_if(
        calendars, [&](const EventCalendar& calendar) { return collator.compare(calendar.title, name) == 0; });
    if (similar != calendars.end()) return *similar;
    return std::nullopt;
}

CalendarError calendarNotFoundError(const std::string& name, const std::vector<EventCalendar>& availableCalendars) {
    std::vector<std::string> titles;
    std::ranges::transform(availableCalendars, std::back_inserter(titles), &EventCalendar::title);
    std::ranges::sort(titles);
    return {CalendarError::Code::calendarNotFound,
            "Calendar \"" + name + "\" was not found. Available calendars: " + joined(titles, ", ")};
}

std::vector<EventCalendar> filterExcludedCalendars(std::vector<EventCalendar> calendars,
                                                   const std::vector<std::string>& excludeCalendarIdentifiers,
                                                   const std::vector<std::string>& excludeCalendarNames) {
    std::set<std::string> identifiers, names;
    for (const std::string& identifier : excludeCalendarIdentifiers) identifiers.emplace(trimmed(identifier));
    for (const std::string& name : excludeCalendarNames) names.insert(comparable(name));
    identifiers.erase("");
    names.erase("");
    std::erase_if(calendars, [&](const EventCalendar& calendar) {
        return identifiers.contains(calendar.identifier) || names.contains(comparable(calendar.title));
    });
    return calendars;
}

std::vector<CalendarEvent> fetchEvents(EventStore& store, const std::vector<EventCalendar>& calendars, Instant start,
                                       Instant end) {
    std::vector<std::string> identifiers;
    std::ranges::transform(calendars, std::back_inserter(identifiers), &EventCalendar::identifier);
    std::vector<CalendarEvent> events = store.events(start, end, identifiers);
    std::ranges::stable_sort(events, comesBefore);
    return events;
}

} // namespace vesk::VeskCalendarOperations
