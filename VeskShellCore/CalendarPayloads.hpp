#pragma once

#include "VeskPlatform/EventStore.hpp"
#include "VeskShellCore/CalendarModels.hpp"
#include "VeskSupport/LocalCalendar.hpp"

#include <optional>
#include <string>

// From the store's events to the records that are reported.

namespace vesk::VeskCalendarOperations {

// The words for the store's numbers; a number outside its table is "unknown".
std::string participantStatusWord(int status);
std::string participantRoleWord(int role);
std::string participantTypeWord(int type);
std::string eventStatusWord(int status);
std::string availabilityWord(int availability);

/// The title to show: trimmed, "(Untitled Event)" where that leaves nothing.
std::string normalizedTitle(const CalendarEvent& event);

/// The key of one occurrence, also of a recurring event: "apple_calendar", the calendar's identifier, the event's
/// identifier (its title to show where it has none) and its start, joined by colons. Never taken apart again.
std::string calendarSourceKey(const CalendarEvent& event, const std::string& eventIdentifier,
                              const std::string& occurrenceStartAt);

/// The status of the first attendee who is the current user.
std::optional<std::string> currentUserParticipantStatus(const CalendarEvent& event);

CapabilityCalendarParticipant calendarParticipantPayload(const EventParticipant& participant);
CapabilityCalendarDescriptor calendarDescriptorPayload(const EventCalendar& calendar);
/// Times are written in the zone of `calendar`.
CapabilityCalendarEvent calendarEventPayload(const CalendarEvent& event, const LocalCalendar& calendar);

} // namespace vesk::VeskCalendarOperations
