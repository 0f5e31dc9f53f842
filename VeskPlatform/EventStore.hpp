#pragma once

#include "VeskSupport/Instant.hpp"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

struct EventCalendar {
    std::string identifier;
    std::string title;
    std::string sourceTitle;
    bool allowsContentModifications = false;

    bool operator==(const EventCalendar&) const = default;
};

/// Status: 0 unknown, 1 pending, 2 accepted, 3 declined, 4 tentative, 5 delegated, 6 completed, 7 in process.
/// Role: 0 unknown, 1 required, 2 optional, 3 chair, 4 non-participant. Type: 0 unknown, 1 person, 2 room, 3 resource,
/// 4 group.
struct EventParticipant {
    std::optional<std::string> name;
    std::optional<std::string> url;
    int status = 0;
    int role = 0;
    int type = 0;
    bool isCurrentUser = false;

    bool operator==(const EventParticipant&) const = default;
};

/// One occurrence of an event.
struct CalendarEvent {
    /// Shared by all occurrences of a recurring event; empty where the store gives none.
    std::string identifier;
    std::shared_ptr<const EventCalendar> calendar;
    std::optional<std::string> title;
    Instant start{};
    /// Exclusive. An all-day event starts at a local midnight and ends at one, or up to a second before it where the
    /// store tells it so.
    Instant end{};
    bool allDay = false;
    std::optional<std::string> location;
    std::optional<std::string> notes;
    std::optional<std::string> url;
    /// 0 none, 1 confirmed, 2 tentative, 3 canceled.
    int status = 0;
    /// -1 not supported, 0 busy, 1 free, 2 tentative, 3 unavailable.
    int availability = 0;
    std::optional<Instant> lastModified;
    bool hasRecurrenceRules = false;
    std::optional<EventParticipant> organizer;
    /// None where the event has no attendee list, in the store's order otherwise.
    std::optional<std::vector<EventParticipant>> attendees;
};

struct NewEvent {
    std::string calendarIdentifier;
    std::string title;
    Instant start{};
    Instant end{};
    bool allDay = false;
    std::optional<std::string> location;
    std::optional<std::string> notes;
};

/// The user's calendars. Called on the main executor, one call at a time; an adapter may use threads of its own within
/// a call. A store that does not exist yet is an empty one. Failures are ErrorRecords of the platform.
class EventStore {
public:
    virtual ~EventStore() = default;

    /// All calendars that hold events, of every source, in the store's order.
    virtual std::vector<EventCalendar> calendars() = 0;
    /// Occurrences in the named calendars, recurrence expanded, that start before `to` and end after `from`; one of no
    /// length counts where from <= start < to. The order is stable for an unchanged store and means nothing else.
    virtual std::vector<CalendarEvent> events(Instant from, Instant to,
                                              const std::vector<std::string>& calendarIdentifiers) = 0;
    /// The first occurrence of the event of that identifier, from the first calendar that has it.
    virtual std::optional<CalendarEvent> event(const std::string& identifier) = 0;
    /// Adds an event and makes it durable before it returns. Refusals (an unknown calendar, one that cannot be changed)
    /// and failed writes throw and leave the store as it was.
    virtual CalendarEvent save(const NewEvent& event) = 0;
};

} // namespace vesk
