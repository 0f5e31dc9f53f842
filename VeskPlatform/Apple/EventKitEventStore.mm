#import "VeskPlatform/Apple/EventKitEventStore.hpp"

#import "VeskPlatform/Apple/EventKitCalendars.hpp"
#import "VeskPlatform/Apple/FoundationErrors.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"

#include <map>

namespace vesk {
namespace {

// The port's numbers are the framework's own.
static_assert(EKParticipantStatusUnknown == 0 && EKParticipantStatusPending == 1 && EKParticipantStatusAccepted == 2
              && EKParticipantStatusDeclined == 3 && EKParticipantStatusTentative == 4
              && EKParticipantStatusDelegated == 5 && EKParticipantStatusCompleted == 6
              && EKParticipantStatusInProcess == 7);
static_assert(EKParticipantRoleUnknown == 0 && EKParticipantRoleRequired == 1 && EKParticipantRoleOptional == 2
              && EKParticipantRoleChair == 3 && EKParticipantRoleNonParticipant == 4);
static_assert(EKParticipantTypeUnknown == 0 && EKParticipantTypePerson == 1 && EKParticipantTypeRoom == 2
              && EKParticipantTypeResource == 3 && EKParticipantTypeGroup == 4);
static_assert(EKEventStatusNone == 0 && EKEventStatusConfirmed == 1 && EKEventStatusTentative == 2
              && EKEventStatusCanceled == 3);
static_assert(EKEventAvailabilityNotSupported == -1 && EKEventAvailabilityBusy == 0 && EKEventAvailabilityFree == 1
              && EKEventAvailabilityTentative == 2 && EKEventAvailabilityUnavailable == 3);

EventCalendar eventCalendar(EKCalendar* calendar) {
    return {.identifier = utf8(calendar.calendarIdentifier),
            .title = utf8(calendar.title),
            .sourceTitle = utf8(calendar.source.title),
            .allowsContentModifications = calendar.allowsContentModifications};
}

EventParticipant eventParticipant(EKParticipant* participant) {
    return {.name = optionalUtf8(participant.name),
            .url = optionalUtf8(participant.URL.absoluteString),
            .status = static_cast<int>(participant.participantStatus),
            .role = static_cast<int>(participant.participantRole),
            .type = static_cast<int>(participant.participantType),
            .isCurrentUser = participant.isCurrentUser};
}

std::optional<EventParticipant> organizerOf(EKEvent* event) {
    EKParticipant* organizer = event.organizer;
    if (organizer == nil) return std::nullopt;
    return eventParticipant(organizer);
}

std::optional<std::vector<EventParticipant>> attendeesOf(EKEvent* event) {
    NSArray<EKParticipant*>* attendees = event.attendees;
    if (attendees == nil) return std::nullopt;
    std::vector<EventParticipant> result;
    for (EKParticipant* attendee in attendees) result.push_back(eventParticipant(attendee));
    return result;
}

/// Turns events into values; those of one calendar share its value.
class EventReader {
public:
    CalendarEvent read(EKEvent* event) {
        CalendarEvent result;
        result.identifier = utf8(event.eventIdentifier);
        result.calendar = calendarOf(event);
        result.title = optionalUtf8(event.title);
        result.start = instant(event.startDate);
        result.end = instant(event.endDate);
        result.allDay = event.isAllDay;
        result.location = optionalUtf8(event.location);
        result.notes = optionalUtf8(event.notes);
        result.url = optionalUtf8(event.URL.absoluteString);
        result.status = static_cast<int>(event.status);
        result.availability = static_cast<int>(event.availability);
        result.lastModified = optionalInstant(event.lastModifiedDate);
        result.hasRecurrenceRules = event.recurrenceRules.count > 0;
        result.organizer = organizerOf(event);
        result.attendees = attendeesOf(event);
        return result;
    }

private:
    std::shared_ptr<const EventCalendar> calendarOf(EKEvent* event) {
        auto& calendar = calendars_[utf8(event.calendar.calendarIdentifier)];
        if (calendar == nullptr) calendar = std::make_shared<const EventCalendar>(eventCalendar(event.calendar));
        return calendar;
    }

    std::map<std::string, std::shared_ptr<const EventCalendar>> calendars_;
};

} // namespace

std::vector<EventCalendar> EventKitEventStore::calendars() {
    std::vector<EventCalendar> result;
    for (EKCalendar* calendar in [store_ calendarsForEntityType:EKEntityTypeEvent])
        result.push_back(eventCalendar(calendar));
    return result;
}

std::vector<CalendarEvent> EventKitEventStore::events(Instant from, Instant to,
                                                      const std::vector<std::string>& calendarIdentifiers) {
    NSArray<EKCalendar*>* named = calendarsNamed(calendarIdentifiers, EKEntityTypeEvent, store_);
    if (named.count == 0) return {}; // a predicate of no calendars may mean all of them
    NSPredicate* window = [store_ predicateForEventsWithStartDate:nsDate(from) endDate:nsDate(to) calendars:named];
    std::vector<CalendarEvent> result;
    EventReader reader;
    for (EKEvent* event in [store_ eventsMatchingPredicate:window]) result.push_back(reader.read(event));
    return result;
}

std::optional<CalendarEvent> EventKitEventStore::event(const std::string& identifier) {
    EKEvent* found = [store_ eventWithIdentifier:nsString(identifier)];
    if (found == nil) return std::nullopt;
    return EventReader().read(found);
}

CalendarEvent EventKitEventStore::save(const NewEvent& event) {
    EKCalendar* calendar = calendarNamed(event.calendarIdentifier, EKEntityTypeEvent, store_);
    if (calendar == nil) throw ErrorRecord("EventKitEventStore", 404, "The calendar does not exist any more.");
    EKEvent* made = [EKEvent eventWithEventStore:store_];
    made.calendar = calendar;
    made.title = nsString(event.title);
    made.startDate = nsDate(event.start);
    made.endDate = nsDate(event.end);
    made.allDay = event.allDay;
    made.location = optionalNsString(event.location);
    made.notes = optionalNsString(event.notes);
    NSError* error = nil;
    if (![store_ saveEvent:made span:EKSpanThisEvent commit:YES error:&error]) throwError(error);
    return EventReader().read(made);
}

} // namespace vesk
