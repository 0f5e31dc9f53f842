#include "VeskShellCore/CalendarModels.hpp"

#include "tests/VeskShellCore/GoldenRecords.hpp"

namespace vesk {
namespace {

using test::expectGolden, test::expectRequired;

const std::string smallestEvent = R"({
  "allDay" : false,
  "calendarIdentifier" : "work",
  "calendarTitle" : "Work",
  "endAt" : "2026-04-26T15:00:00+02:00",
  "identifier" : "",
  "startAt" : "2026-04-26T14:00:00+02:00",
  "title" : "Sync"
})";

TEST(CalendarModels, Descriptor) {
    const std::string json = R"({
  "allowsContentModifications" : true,
  "identifier" : "home\/work",
  "sourceTitle" : "home",
  "title" : " Work "
})";
    const auto record = expectGolden<CapabilityCalendarDescriptor>(json);
    EXPECT_EQ(record, (CapabilityCalendarDescriptor{"home/work", " Work ", "home", true}));
    expectRequired<CapabilityCalendarDescriptor>(json, {"allowsContentModifications", "identifier", "title"});
}

TEST(CalendarModels, Participant) {
    const std::string json = R"({
  "isCurrentUser" : false,
  "name" : "Dana",
  "role" : "chair",
  "status" : "in_process",
  "type" : "person",
  "url" : "mailto:dana@example.com"
})";
    const auto record = expectGolden<CapabilityCalendarParticipant>(json);
    EXPECT_EQ(record, (CapabilityCalendarParticipant{"Dana", "mailto:dana@example.com", "in_process", "chair", "person",
                                                     false}));
    expectRequired<CapabilityCalendarParticipant>(json, {"isCurrentUser", "role", "status", "type"});
}

TEST(CalendarModels, EventLeavesAbsentFieldsOut) {
    const auto record = expectGolden<CapabilityCalendarEvent>(smallestEvent);
    EXPECT_EQ(record.attendees, std::nullopt);
    EXPECT_EQ(record.hasRecurrenceRules, std::nullopt);
    expectRequired<CapabilityCalendarEvent>(
        smallestEvent, {"allDay", "calendarIdentifier", "calendarTitle", "endAt", "identifier", "startAt", "title"});
}

TEST(CalendarModels, EventWithEveryField) {
    const auto record = expectGolden<CapabilityCalendarEvent>(R"({
  "allDay" : true,
  "attendees" : [
    {
      "isCurrentUser" : true,
      "role" : "required",
      "status" : "accepted",
      "type" : "person"
    }
  ],
  "availability" : "busy",
  "calendarAllowsContentModifications" : false,
  "calendarIdentifier" : "work",
  "calendarSourceTitle" : "On This Computer",
  "calendarTitle" : "Work",
  "endAt" : "2026-04-27T00:00:00+02:00",
  "hasRecurrenceRules" : false,
  "identifier" : "e1",
  "lastModifiedAt" : "2026-04-01T00:00:00+02:00",
  "location" : "Room 1",
  "notes" : "Bring tea",
  "occurrenceStartAt" : "2026-04-26T00:00:00+02:00",
  "organizer" : {
    "isCurrentUser" : false,
    "role" : "unknown",
    "status" : "unknown",
    "type" : "person"
  },
  "participantStatus" : "accepted",
  "sourceKey" : "apple_calendar:work:e1:2026-04-26T00:00:00+02:00",
  "startAt" : "2026-04-26T00:00:00+02:00",
  "status" : "confirmed",
  "title" : "Sync",
  "url" : "https:\/\/example.com\/"
})");
    EXPECT_EQ(record.attendees->size(), 1u);
    EXPECT_EQ(record.url, "https://example.com/");
}

TEST(CalendarModels, EventWritesAnEmptyAttendeeList) {
    CapabilityCalendarEvent event;
    event.attendees.emplace();
    EXPECT_NE(writeJson(toJson(event)).find("\"attendees\" : [\n\n  ]"), std::string::npos) << writeJson(toJson(event));
}

TEST(CalendarModels, CalendarsResponse) {
    const std::string json = R"({
  "brokerPath" : "Vesk.app",
  "calendars" : [

  ],
  "detail" : "None."
})";
    EXPECT_EQ(expectGolden<CapabilityCalendarCalendarsResponse>(json).bundlePath, std::nullopt);
    expectRequired<CapabilityCalendarCalendarsResponse>(json, {"brokerPath", "calendars", "detail"});
}

TEST(CalendarModels, EventsResponse) {
    const std::string json = R"({
  "brokerPath" : "Vesk.app",
  "bundlePath" : "\/Applications\/Vesk.app",
  "calendarName" : "Work",
  "detail" : "None.",
  "events" : [

  ],
  "requestedDate" : " 2026-04-26",
  "view" : "date"
})";
    const auto record = expectGolden<CapabilityCalendarEventsResponse>(json);
    EXPECT_EQ(record.requestedDate, " 2026-04-26");
    EXPECT_EQ(record.calendarName, "Work");
    expectRequired<CapabilityCalendarEventsResponse>(json, {"brokerPath", "detail", "events", "view"});
}

TEST(CalendarModels, SnapshotResponse) {
    const std::string json = R"({
  "brokerPath" : "Vesk.app",
  "bundlePath" : "\/Applications\/Vesk.app",
  "calendars" : [
    {
      "allowsContentModifications" : false,
      "identifier" : "a",
      "title" : "A"
    }
  ],
  "detail" : "None.",
  "endAt" : "2026-04-27T00:00:00Z",
  "events" : [

  ],
  "startAt" : "2026-04-26T00:00:00Z"
})";
    expectGolden<CapabilityCalendarSnapshotResponse>(json);
    expectRequired<CapabilityCalendarSnapshotResponse>(
        json, {"brokerPath", "calendars", "detail", "endAt", "events", "startAt"});
}

TEST(CalendarModels, CreateResponse) {
    const std::string json = R"({
  "brokerPath" : "Vesk.app",
  "bundlePath" : "\/Applications\/Vesk.app",
  "detail" : "Created.",
  "event" : {
    "allDay" : false,
    "calendarIdentifier" : "work",
    "calendarTitle" : "Work",
    "endAt" : "2026-04-26T15:00:00Z",
    "identifier" : "e1",
    "startAt" : "2026-04-26T14:00:00Z",
    "title" : "Sync"
  }
})";
    expectGolden<CapabilityCalendarCreateResponse>(json);
    expectRequired<CapabilityCalendarCreateResponse>(json, {"brokerPath", "detail", "event"});
}

TEST(CalendarModels, InviteResponse) {
    const std::string json = R"({
  "brokerPath" : "Vesk.app",
  "bundlePath" : "\/Applications\/Vesk.app",
  "currentParticipantStatus" : "accepted",
  "detail" : "Blocked.",
  "event" : {
    "allDay" : false,
    "calendarIdentifier" : "work",
    "calendarTitle" : "Work",
    "endAt" : "2026-04-26T15:00:00Z",
    "identifier" : "e1",
    "startAt" : "2026-04-26T14:00:00Z",
    "title" : "Sync"
  },
  "proposedEndAt" : "later",
  "proposedStartAt" : "soon",
  "reasonCode" : "unsupported_native_response_mutation",
  "requestedResponse" : "declined",
  "status" : "blocked"
})";
    expectGolden<CapabilityCalendarInviteResponse>(json);
    expectRequired<CapabilityCalendarInviteResponse>(json, {"brokerPath", "detail", "requestedResponse", "status"});
}

TEST(CalendarModels, InviteResponseLeavesAbsentFieldsOut) {
    expectGolden<CapabilityCalendarInviteResponse>(R"({
  "brokerPath" : "Vesk.app",
  "detail" : "Not found.",
  "requestedResponse" : "propose_time",
  "status" : "not_found"
})");
}

} // namespace
} // namespace vesk
