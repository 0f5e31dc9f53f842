#include "VeskShellCore/CalendarPayloads.hpp"

#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <array>

namespace vesk::VeskCalendarOperations {
namespace {

/// The word at a number that counts from zero.
template <std::size_t count> std::string wordAt(const std::array<const char*, count>& words, int number) {
    const bool known = number >= 0 && static_cast<std::size_t>(number) < count;
    return known ? words[static_cast<std::size_t>(number)] : "unknown";
}

} // namespace

std::string participantStatusWord(int status) {
    static constexpr std::array words{"unknown",   "pending",   "accepted",  "declined",
                                      "tentative", "delegated", "completed", "in_process"};
    return wordAt(words, status);
}

std::string participantRoleWord(int role) {
    static constexpr std::array words{"unknown", "required", "optional", "chair", "non_participant"};
    return wordAt(words, role);
}

std::string participantTypeWord(int type) {
    static constexpr std::array words{"unknown", "person", "room", "resource", "group"};
    return wordAt(words, type);
}

std::string eventStatusWord(int status) {
    static constexpr std::array words{"none", "confirmed", "tentative", "canceled"};
    return wordAt(words, status);
}

std::string availabilityWord(int availability) {
    static constexpr std::array words{"busy", "free", "tentative", "unavailable"};
    return availability == -1 ? "not_supported" : wordAt(words, availability);
}

std::string normalizedTitle(const CalendarEvent& event) {
    return trimmedOrAbsent(event.title).value_or("(Untitled Event)");
}

std::string calendarSourceKey(const CalendarEvent& event, const std::string& eventIdentifier,
                              const std::string& occurrenceStartAt) {
    const std::string name = eventIdentifier.empty() ? normalizedTitle(event) : eventIdentifier;
    return joined({"apple_calendar", event.calendar->identifier, name, occurrenceStartAt}, ":");
}

std::optional<std::string> currentUserParticipantStatus(const CalendarEvent& event) {
    if (!event.attendees) return std::nullopt;
    const auto user = std::ranges::find_if(*event.attendees, &EventParticipant::isCurrentUser);
    if (user == event.attendees->end()) return std::nullopt;
    return participantStatusWord(user->status);
}

CapabilityCalendarParticipant calendarParticipantPayload(const EventParticipant& participant) {
    return {.name = trimmedOrAbsent(participant.name),
            .url = participant.url,
            .status = participantStatusWord(participant.status),
            .role = participantRoleWord(participant.role),
            .type = participantTypeWord(participant.type),
            .isCurrentUser = participant.isCurrentUser};
}

CapabilityCalendarDescriptor calendarDescriptorPayload(const EventCalendar& calendar) {
    return {.identifier = calendar.identifier,
            .title = calendar.title,
            .sourceTitle = calendar.sourceTitle,
            .allowsContentModifications = calendar.allowsContentModifications};
}

CapabilityCalendarEvent calendarEventPayload(const CalendarEvent& event, const LocalCalendar& calendar) {
    CapabilityCalendarEvent payload;
    payload.identifier = event.identifier;
    payload.startAt = calendar.isoText(event.start);
    payload.endAt = calendar.isoText(event.end);
    payload.occurrenceStartAt = payload.startAt;
    payload.sourceKey = calendarSourceKey(event, event.identifier, payload.startAt);
    payload.calendarIdentifier = event.calendar->identifier;
    payload.calendarTitle = event.calendar->title;
    payload.calendarSourceTitle = event.calendar->sourceTitle;
    payload.calendarAllowsContentModifications = event.calendar->allowsContentModifications;
    payload.title = normalizedTitle(event);
    payload.allDay = event.allDay;
    payload.location = trimmedOrAbsent(event.location);
    payload.notes = trimmedOrAbsent(event.notes);
    payload.url = event.url;
    payload.status = eventStatusWord(event.status);
    payload.availability = availabilityWord(event.availability);
    payload.participantStatus = currentUserParticipantStatus(event);
    if (event.lastModified) payload.lastModifiedAt = calendar.isoText(*event.lastModified);
    payload.hasRecurrenceRules = event.hasRecurrenceRules;
    if (event.organizer) payload.organizer = calendarParticipantPayload(*event.organizer);
    if (event.attendees) {
        payload.attendees.emplace();
        std::ranges::transform(*event.attendees, std::back_inserter(*payload.attendees), calendarParticipantPayload);
    }
    return payload;
}

} // namespace vesk::VeskCalendarOperations
