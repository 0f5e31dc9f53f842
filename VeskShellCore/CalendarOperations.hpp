#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/CalendarModels.hpp"
#include "VeskSupport/Task.hpp"

#include <optional>
#include <string>
#include <vector>

/// The user's calendars: reading events, adding one, looking at an invitation.
///
/// Each operation checks its arguments, then asks for access, then reads the store once and returns one record. It
/// suspends only while the user is asked; the platform outlives it, everything else it owns. Calendars whose title
/// holds the word "holiday" do not exist for any of them. Days are the user's calendar days, so one of a
/// daylight-saving change has 23 or 25 hours. Events come by start, then calendar title, then own title.
///
/// Failures are CalendarErrors; what the store reports passes through unchanged.
namespace vesk::VeskCalendarOperations {

/// All calendars, by title in the user's alphabetical order, case aside.
Task<CapabilityCalendarCalendarsResponse> listCalendars(Platform& platform, const Bundle& bundle);

/// The events of today in all calendars.
Task<CapabilityCalendarEventsResponse> listToday(Platform& platform, const Bundle& bundle);

/// The events of the day `date`, `yyyy-MM-dd`.
Task<CapabilityCalendarEventsResponse> listForDate(Platform& platform, std::string date, const Bundle& bundle);

/// The events of today in the calendar of that name: its exact title, else its title in another case.
Task<CapabilityCalendarEventsResponse> listCalendarToday(Platform& platform, std::string name, const Bundle& bundle);

/// The first event within 365 days that has not ended yet; one in progress counts.
Task<CapabilityCalendarEventsResponse> nextEvent(Platform& platform, const Bundle& bundle);

/// The events between two times (`parseDateTime`), at most 31 days of 24 hours apart, without the calendars that are
/// excluded by identifier, or by whole title, case and white space around it aside.
Task<CapabilityCalendarSnapshotResponse> snapshotEvents(Platform& platform, std::string startAt, std::string endAt,
                                                        std::vector<std::string> excludeCalendarIdentifiers,
                                                        std::vector<std::string> excludeCalendarNames,
                                                        const Bundle& bundle);

/// Adds an event. Without an end it lasts an hour, or a day where `allDay`; an all-day end is exclusive, but may be
/// given as the date of the start for one day.
Task<CapabilityCalendarCreateResponse> createEvent(Platform& platform, std::string calendarName, std::string title,
                                                   std::string startAt, std::optional<std::string> endAt, bool allDay,
                                                   std::optional<std::string> location,
                                                   std::optional<std::string> notes, const Bundle& bundle);

/// Finds an invitation and tells how the user's answer stands; changes nothing, since calendars offer an attendee's
/// answer for reading only. The proposed times are echoed, trimmed.
Task<CapabilityCalendarInviteResponse>
respondToInvite(Platform& platform, std::string response, std::optional<std::string> eventIdentifier,
                std::optional<std::string> sourceKey, std::optional<std::string> title,
                std::optional<std::string> startAt, std::optional<std::string> proposedStartAt,
                std::optional<std::string> proposedEndAt, const Bundle& bundle);

} // namespace vesk::VeskCalendarOperations
