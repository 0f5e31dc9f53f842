#pragma once

#include "VeskPlatform/EventStore.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>
#include <functional>

namespace vesk::test {

/// Calendars and occurrences in memory. Each call is recorded by its name, in order.
class FakeEventStore : public EventStore {
public:
    std::vector<EventCalendar> stored;
    std::vector<CalendarEvent> occurrences;
    /// Thrown by the next `save`, if set.
    std::optional<ErrorRecord> saveFailure;
    std::vector<NewEvent> saved;
    std::vector<std::string> calls;

    /// Adds a calendar; the result is what its events point to.
    std::shared_ptr<const EventCalendar> add(EventCalendar calendar) {
        stored.push_back(calendar);
        return std::make_shared<const EventCalendar>(std::move(calendar));
    }

    std::vector<EventCalendar> calendars() override {
        calls.emplace_back("calendars");
        return stored;
    }
    std::vector<CalendarEvent> events(Instant from, Instant to,
                                      const std::vector<std::string>& calendarIdentifiers) override {
        calls.emplace_back("events");
        std::vector<CalendarEvent> result;
        std::copy_if(occurrences.begin(), occurrences.end(), std::back_inserter(result), [&](const CalendarEvent& e) {
            const auto& ids = calendarIdentifiers;
            if (std::find(ids.begin(), ids.end(), e.calendar->identifier) == ids.end()) return false;
            return e.start < to && (e.end > from || (e.start == e.end && e.start >= from));
        });
        return result;
    }
    std::optional<CalendarEvent> event(const std::string& identifier) override {
        calls.emplace_back("event");
        std::optional<CalendarEvent> first;
        for (const EventCalendar& calendar : stored) {
            for (const CalendarEvent& e : occurrences)
                if (e.identifier == identifier && e.calendar->identifier == calendar.identifier
                    && (!first || e.start < first->start))
                    first = e;
            if (first) break;
        }
        return first;
    }
    CalendarEvent save(const NewEvent& event) override {
        calls.emplace_back("save");
        if (saveFailure) throw *saveFailure;
        const auto calendar = std::find_if(stored.begin(), stored.end(),
                                           [&](const auto& c) { return c.identifier == event.calendarIdentifier; });
        if (calendar == stored.end()) throw ErrorRecord("FakeEventStore", 404, "No such calendar.");
        if (!calendar->allowsContentModifications)
            throw ErrorRecord("FakeEventStore", 403, "The calendar is read-only.");
        saved.push_back(event);
        CalendarEvent made;
        made.identifier = "saved-" + std::to_string(saved.size());
        made.calendar = std::make_shared<const EventCalendar>(*calendar);
        made.title = event.title;
        made.start = event.start;
        made.end = event.end;
        made.allDay = event.allDay;
        made.location = event.location;
        made.notes = event.notes;
        occurrences.push_back(made);
        return made;
    }
};

} // namespace vesk::test
