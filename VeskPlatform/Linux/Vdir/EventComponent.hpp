#pragma once

#include "VeskPlatform/EventStore.hpp"
#include "VeskSupport/Instant.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::vdir {

/// A DATE or DATE-TIME value (RFC 5545, sections 3.3.4 and 3.3.5) as it stands in the file.
struct EventTime {
    enum class Anchor { date, floating, utc, zoned };
    WallTime wall{};
    Anchor anchor = Anchor::floating;
    /// The TZID where the anchor is `zoned`.
    std::string tzid;

    bool isDate() const { return anchor == Anchor::date; }
};

/// A DURATION: nominal days on the wall and an exact rest.
struct EventDuration {
    std::chrono::days days{0};
    std::chrono::seconds exact{0};
};

/// One more start of a recurring event, with its own length where the RDATE is a period.
struct ExtraDate {
    EventTime start;
    std::optional<EventTime> end;
    std::optional<EventDuration> duration;
};

/// One VEVENT as plain values. Text is well-formed UTF-8.
struct EventComponent {
    std::string uid;
    int sequence = 0;
    EventTime start;
    std::optional<EventTime> end;
    std::optional<EventDuration> duration;

    std::optional<EventTime> recurrenceId;
    bool thisAndFuture = false;
    /// Values of RRULE and EXRULE as they stand.
    std::vector<std::string> rules, excludedRules;
    std::vector<ExtraDate> extraDates;
    std::vector<EventTime> excludedDates;

    std::optional<std::string> summary, location, description, url;
    int status = 0;
    int availability = 0;
    std::optional<Instant> lastModified;
    std::optional<EventParticipant> organizer;
    std::optional<std::vector<EventParticipant>> attendees;
};

/// Parses the text of one whole VEVENT. `userAddresses` are in lower case, without "mailto:"; an attendee with one of
/// them is the current user. None where it has no valid DTSTART.
std::optional<EventComponent> parseEvent(std::string_view component, const std::vector<std::string>& userAddresses);

} // namespace vesk::vdir
