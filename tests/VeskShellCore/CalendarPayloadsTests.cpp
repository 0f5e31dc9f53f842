#include "VeskShellCore/CalendarPayloads.hpp"

#include "tests/VeskShellCore/CalendarWorld.hpp"

namespace vesk::VeskCalendarOperations {
namespace {

using namespace std::chrono;
using test::attendee;

using Table = std::vector<std::pair<int, const char*>>;

template <class Words> void expectTable(Words words, const Table& table) {
    for (const auto& [number, word] : table) EXPECT_EQ(words(number), word) << number;
}

TEST(CalendarWords, ParticipantStatus) {
    expectTable(participantStatusWord, {{-1, "unknown"},
                                        {0, "unknown"},
                                        {1, "pending"},
                                        {2, "accepted"},
                                        {3, "declined"},
                                        {4, "tentative"},
                                        {5, "delegated"},
                                        {6, "completed"},
                                        {7, "in_process"},
                                        {8, "unknown"}});
}
TEST(CalendarWords, ParticipantRole) {
    expectTable(participantRoleWord, {{-1, "unknown"},
                                      {0, "unknown"},
                                      {1, "required"},
                                      {2, "optional"},
                                      {3, "chair"},
                                      {4, "non_participant"},
                                      {5, "unknown"}});
}
TEST(CalendarWords, ParticipantType) {
    expectTable(
        participantTypeWord,
        {{-1, "unknown"}, {0, "unknown"}, {1, "person"}, {2, "room"}, {3, "resource"}, {4, "group"}, {5, "unknown"}});
}
TEST(CalendarWords, EventStatus) {
    expectTable(eventStatusWord,
                {{-1, "unknown"}, {0, "none"}, {1, "confirmed"}, {2, "tentative"}, {3, "canceled"}, {4, "unknown"}});
}
TEST(CalendarWords, Availability) {
    expectTable(availabilityWord, {{-2, "unknown"},
                                   {-1, "not_supported"},
                                   {0, "busy"},
                                   {1, "free"},
                                   {2, "tentative"},
                                   {3, "unavailable"},
                                   {4, "unknown"}});
}

class CalendarPayloads : public ::testing::Test {
protected:
    CalendarPayloads() {
        event.identifier = "e1";
        event.calendar =
            std::make_shared<const EventCalendar>(EventCalendar{"home/work", " Work ", "On This Computer", true});
        event.title = " Sync\n";
        event.start = Instant{sys_days{2026y / 4 / 26}} + 12h;
        event.end = event.start + 1h;
    }
    LocalCalendar berlin{"Europe/Berlin"};
    CalendarEvent event;
};

TEST_F(CalendarPayloads, AMinimalEventFillsWhatIsAlwaysFilled) {
    CapabilityCalendarEvent expected;
    expected.identifier = "e1";
    expected.sourceKey = "apple_calendar:home/work:e1:2026-04-26T14:00:00+02:00";
    expected.calendarIdentifier = "home/work";
    expected.calendarTitle = " Work ";
    expected.calendarSourceTitle = "On This Computer";
    expected.calendarAllowsContentModifications = true;
    expected.title = "Sync";
    expected.startAt = "2026-04-26T14:00:00+02:00";
    expected.endAt = "2026-04-26T15:00:00+02:00";
    expected.occurrenceStartAt = expected.startAt;
    expected.status = "none";
    expected.availability = "busy";
    expected.hasRecurrenceRules = false;
    EXPECT_EQ(calendarEventPayload(event, berlin), expected);
}

TEST_F(CalendarPayloads, AFullEventFillsEveryField) {
    event.allDay = true;
    event.location = "\tRoom 1 ";
    event.notes = " Bring tea\n";
    event.url = "https://example.com/";
    event.status = 3;
    event.availability = -1;
    event.lastModified = Instant{sys_days{2026y / 1 / 5}} + 250ms;
    event.hasRecurrenceRules = true;
    event.organizer = EventParticipant{" Olga ", "mailto:olga@example.com", 0, 0, 1, false};
    event.attendees = {{" ", std::nullopt, 4, 2, 3, false}, {"Dana", "mailto:dana@example.com", 2, 1, 1, true}};
    const auto payload = calendarEventPayload(event, berlin);
    EXPECT_TRUE(payload.allDay);
    EXPECT_EQ(payload.location, "Room 1");
    EXPECT_EQ(payload.notes, "Bring tea");
    EXPECT_EQ(payload.url, "https://example.com/");
    EXPECT_EQ(payload.status, "canceled");
    EXPECT_EQ(payload.availability, "not_supported");
    EXPECT_EQ(payload.lastModifiedAt, "2026-01-05T01:00:00+01:00");
    EXPECT_EQ(payload.hasRecurrenceRules, true);
    EXPECT_EQ(payload.participantStatus, "accepted");
    EXPECT_EQ(payload.organizer, (CapabilityCalendarParticipant{"Olga", "mailto:olga@example.com", "unknown", "unknown",
                                                                "person", false}));
    ASSERT_EQ(payload.attendees->size(), 2u);
    EXPECT_EQ(payload.attendees->at(0),
              (CapabilityCalendarParticipant{std::nullopt, std::nullopt, "tentative", "optional", "resource", false}));
    EXPECT_EQ(payload.attendees->at(1), (CapabilityCalendarParticipant{"Dana", "mailto:dana@example.com", "accepted",
                                                                       "required", "person", true}));
}

TEST_F(CalendarPayloads, BlankLocationAndNotesAreAbsent) {
    event.location = " ";
    event.notes = "";
    EXPECT_EQ(calendarEventPayload(event, berlin).location, std::nullopt);
    EXPECT_EQ(calendarEventPayload(event, berlin).notes, std::nullopt);
}

TEST_F(CalendarPayloads, AnEmptyAttendeeListIsKeptAndNoneIsAbsent) {
    EXPECT_EQ(calendarEventPayload(event, berlin).attendees, std::nullopt);
    event.attendees.emplace();
    ASSERT_TRUE(calendarEventPayload(event, berlin).attendees.has_value());
    EXPECT_TRUE(calendarEventPayload(event, berlin).attendees->empty());
}

TEST_F(CalendarPayloads, AnEventWithoutATitleIsUntitledAndKeepsItsIdentifierInTheKey) {
    for (const auto& title :
         {std::optional<std::string>(), std::optional<std::string>(""), std::optional<std::string>("\u2003\n")}) {
        event.title = title;
        const auto payload = calendarEventPayload(event, berlin);
        EXPECT_EQ(payload.title, "(Untitled Event)");
        EXPECT_EQ(payload.sourceKey, "apple_calendar:home/work:e1:2026-04-26T14:00:00+02:00");
    }
}

TEST_F(CalendarPayloads, AnEventWithoutAnIdentifierHasItsTitleInTheKey) {
    event.identifier.clear();
    EXPECT_EQ(calendarEventPayload(event, berlin).identifier, "");
    EXPECT_EQ(calendarEventPayload(event, berlin).sourceKey, "apple_calendar:home/work:Sync:2026-04-26T14:00:00+02:00");
    event.title.reset();
    EXPECT_EQ(calendarEventPayload(event, berlin).sourceKey,
              "apple_calendar:home/work:(Untitled Event):2026-04-26T14:00:00+02:00");
}

TEST_F(CalendarPayloads, TimesAndTheKeyFollowTheZone) {
    const auto payload = calendarEventPayload(event, LocalCalendar("UTC"));
    EXPECT_EQ(payload.startAt, "2026-04-26T12:00:00Z");
    EXPECT_EQ(payload.sourceKey, "apple_calendar:home/work:e1:2026-04-26T12:00:00Z");
}

TEST_F(CalendarPayloads, TheFirstAttendeeWhoIsTheUserDecides) {
    EXPECT_EQ(currentUserParticipantStatus(event), std::nullopt);
    event.attendees.emplace();
    EXPECT_EQ(currentUserParticipantStatus(event), std::nullopt);
    event.attendees = {attendee(2)};
    EXPECT_EQ(currentUserParticipantStatus(event), std::nullopt);
    event.attendees = {attendee(2), attendee(3, true), attendee(4, true)};
    EXPECT_EQ(currentUserParticipantStatus(event), "declined");
    event.attendees = {attendee(99, true)};
    EXPECT_EQ(currentUserParticipantStatus(event), "unknown");
}

} // namespace
} // namespace vesk::VeskCalendarOperations
