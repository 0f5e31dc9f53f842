#include "VeskShellCore/CalendarInvites.hpp"

#include "VeskShellCore/CalendarOperations.hpp"
#include "tests/VeskShellCore/CalendarWorld.hpp"

namespace vesk::VeskCalendarOperations {
namespace {

using namespace std::chrono_literals;
using test::attendee;

TEST(InviteResponses, HaveManyWordsForFourAnswers) {
    const std::pair<const char*, const char*> cases[] = {
        {"accept", "accepted"},
        {"accepted", "accepted"},
        {"yes", "accepted"},
        {"decline", "declined"},
        {"declined", "declined"},
        {"no", "declined"},
        {"tentative", "tentative"},
        {"maybe", "tentative"},
        {"Maybe", "tentative"},
        {"propose", "propose_time"},
        {"propose_time", "propose_time"},
        {"suggest", "propose_time"},
        {"suggest_time", "propose_time"},
        {"suggest time", "propose_time"},
        {" Propose-Time\n", "propose_time"},
        {"YES", "accepted"},
    };
    for (const auto& [word, response] : cases) EXPECT_EQ(normalizeInviteResponse(word), response) << word;
}

TEST(InviteResponses, OtherWordsAreRefused) {
    for (const char* word : {"ok", "", "  ", "accept!", "propose  time", "propose\ttime", "propose--time", "_yes"})
        try {
            normalizeInviteResponse(word);
            FAIL() << word;
        } catch (const CalendarError& error) {
            EXPECT_EQ(error.code(), 400);
            EXPECT_EQ(error.description(),
                      "Unsupported invite response. Use accepted, declined, tentative, or propose_time.");
        }
}

TEST(ComparableTitles, AreLowerCaseRunsOfLettersAndDigits) {
    const std::pair<const char*, const char*> cases[] = {
        {"Team  Sync - Q3!", "team sync q3"},
        {"team sync q3", "team sync q3"},
        {" \u00c9T\u00c9 ", "\u00e9t\u00e9"},
        {"a_b", "a b"},
        {"?!", ""},
        {"", ""},
        {"(Untitled Event)", "untitled event"},
    };
    for (const auto& [title, comparable] : cases) EXPECT_EQ(normalizeComparableTitle(title), comparable) << title;
}

struct Arguments {
    std::string response = "accepted";
    std::optional<std::string> eventIdentifier = {}, sourceKey = {}, title = {}, startAt = {}, proposedStartAt = {},
                               proposedEndAt = {};
};

class CalendarInvites : public test::CalendarWorld {
protected:
    const std::shared_ptr<const EventCalendar> work = addCalendar("Work");

    Task<CapabilityCalendarInviteResponse> task(const Arguments& a) {
        return respondToInvite(platform, a.response, a.eventIdentifier, a.sourceKey, a.title, a.startAt,
                               a.proposedStartAt, a.proposedEndAt, platform.bundle);
    }
    CapabilityCalendarInviteResponse respond(const Arguments& a) { return test::runTask(task(a)); }
    /// The start of the event that is found, "none" without one.
    std::string found(const Arguments& a) {
        const auto response = respond(a);
        EXPECT_EQ(response.status == "not_found", !response.event.has_value());
        return response.event ? response.event->startAt : "none";
    }
    void invite(const std::string& title, int userStatus) {
        addEvent(work, title, 14h).attendees = {attendee(2), attendee(userStatus, true)};
    }
};

TEST_F(CalendarInvites, AnUnknownInviteIsNotFound) {
    const auto response = respond({.response = "No", .title = "Sync"});
    CapabilityCalendarInviteResponse expected;
    expected.brokerPath = "Vesk.app";
    expected.bundlePath = "/Applications/Vesk.app";
    expected.status = "not_found";
    expected.requestedResponse = "declined";
    expected.reasonCode = "calendar_invite_not_found";
    expected.detail = "Vesk could not find the requested Calendar invite in Apple Calendar.";
    EXPECT_EQ(response, expected);
}

TEST_F(CalendarInvites, AnEventWithoutTheUserIsBlocked) {
    addEvent(work, "Sync", 14h).attendees = {attendee(2)};
    const auto response = respond({.title = "Sync"});
    EXPECT_EQ(response.status, "blocked");
    EXPECT_EQ(response.event->title, "Sync");
    EXPECT_EQ(response.currentParticipantStatus, std::nullopt);
    EXPECT_EQ(response.reasonCode, "no_current_user_attendee");
    EXPECT_EQ(response.detail,
              "Vesk found the event, but Apple Calendar does not expose a current-user attendee response to change.");
}

TEST_F(CalendarInvites, AnAnswerThatStandsIsAlreadySet) {
    invite("Sync", 2);
    const auto response = respond({.response = "yes", .title = "Sync"});
    EXPECT_EQ(response.status, "already_set");
    EXPECT_EQ(response.requestedResponse, "accepted");
    EXPECT_EQ(response.event->participantStatus, "accepted");
    EXPECT_EQ(response.currentParticipantStatus, "accepted");
    EXPECT_EQ(response.reasonCode, std::nullopt);
    EXPECT_EQ(response.detail, "The Calendar invite already has the requested response status.");
}

TEST_F(CalendarInvites, AnotherAnswerIsBlocked) {
    invite("Sync", 2);
    const auto response = respond({.response = "declined", .title = "Sync"});
    EXPECT_EQ(response.status, "blocked");
    EXPECT_EQ(response.currentParticipantStatus, "accepted");
    EXPECT_TRUE(response.event.has_value());
    EXPECT_EQ(response.reasonCode, "unsupported_native_response_mutation");
    EXPECT_EQ(response.detail, "Apple EventKit and Calendar scripting expose invite response status as read-only to "
                               "Vesk, so Vesk did not change the invite.");
}

TEST_F(CalendarInvites, EachStatusMeetsEachResponse) {
    const std::pair<int, const char*> statuses[] = {{0, "unknown"},   {1, "pending"},   {2, "accepted"},
                                                    {3, "declined"},  {4, "tentative"}, {5, "delegated"},
                                                    {6, "completed"}, {7, "in_process"}};
    for (const auto& [number, word] : statuses)
        for (const std::string response : {"accepted", "declined", "tentative", "propose_time"}) {
            store.occurrences.clear();
            invite("Sync", number);
            EXPECT_EQ(respond({.response = response, .title = "Sync"}).status,
                      response == word ? "already_set" : "blocked")
                << word << " " << response;
        }
}

TEST_F(CalendarInvites, ProposedTimesAreEchoedTrimmedAndUnread) {
    invite("Sync", 1);
    for (const char* title : {"Sync", "Nothing"}) {
        const auto response =
            respond({.response = "propose", .title = title, .proposedStartAt = " soon ", .proposedEndAt = "\tlater"});
        EXPECT_EQ(response.requestedResponse, "propose_time");
        EXPECT_EQ(response.proposedStartAt, "soon");
        EXPECT_EQ(response.proposedEndAt, "later");
    }
    EXPECT_EQ(respond({.title = "Sync", .proposedStartAt = " ", .proposedEndAt = ""}).proposedStartAt, std::nullopt);
    EXPECT_EQ(respond({.title = "Sync", .proposedStartAt = " ", .proposedEndAt = ""}).proposedEndAt, std::nullopt);
}

TEST_F(CalendarInvites, NothingIsEverSaved) {
    invite("Sync", 1);
    respond({.title = "Sync"});
    EXPECT_EQ(store.calls, (std::vector<std::string>{"calendars", "events"}));
    EXPECT_TRUE(store.saved.empty());
}

TEST_F(CalendarInvites, ArgumentsFailInOrderAndBeforeAccess) {
    grant(0);
    EXPECT_EQ(failureOf(task({.response = "ok"})),
              "400 Unsupported invite response. Use accepted, declined, tentative, or propose_time.");
    const std::string nameless =
        "64 Calendar invite response needs an event id, source key, or title to identify the invite.";
    EXPECT_EQ(failureOf(task({})), nameless);
    EXPECT_EQ(failureOf(task({.eventIdentifier = " ", .sourceKey = "", .title = "\n", .startAt = "x"})), nameless);
    EXPECT_TRUE(platform.fakeConsent.requests.empty());
    EXPECT_TRUE(store.calls.empty());
}

TEST_F(CalendarInvites, ABadStartFailsOnlyAfterAccess) {
    grant(1);
    EXPECT_EQ(failureOf(task({.title = "Sync", .startAt = "x"})),
              "403 Calendar access is restricted by macOS or device policy.");
    EXPECT_TRUE(store.calls.empty());
    grant(3);
    EXPECT_EQ(failureOf(task({.title = "Sync", .startAt = " x "})),
              "400 Invalid date/time: x. Use YYYY-MM-DD HH:MM, YYYY-MM-DDTHH:MM, or full ISO 8601.");
}

TEST_F(CalendarInvites, AnIdentifierFindsAnyEventWithoutASearch) {
    addEvent(addCalendar("Holidays"), "Far away", 5000h);
    EXPECT_EQ(respond({.eventIdentifier = " event-0 ", .title = "Sync", .startAt = "x"}).event->title, "Far away");
    EXPECT_EQ(store.calls, std::vector<std::string>{"event"});
}

TEST_F(CalendarInvites, AnIdentifierThatIsGoneFallsThroughToTheOtherNames) {
    addEvent(work, "Sync", 14h);
    const std::string key = "apple_calendar:id-0:event-0:2026-04-26T14:00:00+02:00";
    EXPECT_EQ(found({.eventIdentifier = "gone", .title = "sync"}), "2026-04-26T14:00:00+02:00");
    EXPECT_EQ(found({.eventIdentifier = "gone", .sourceKey = key}), "2026-04-26T14:00:00+02:00");
    EXPECT_EQ(found({.eventIdentifier = "gone"}), "none");
    EXPECT_EQ(failureOf(task({.eventIdentifier = "gone", .startAt = "x"})),
              "400 Invalid date/time: x. Use YYYY-MM-DD HH:MM, YYYY-MM-DDTHH:MM, or full ISO 8601.");
}

TEST_F(CalendarInvites, ASourceKeyNamesOneOccurrence) {
    addEvent(work, "Weekly", 14h).identifier = "weekly";
    addEvent(work, "Weekly", 14h + 7 * 24h).identifier = "weekly";
    EXPECT_EQ(found({.sourceKey = " apple_calendar:id-0:weekly:2026-05-03T14:00:00+02:00 "}),
              "2026-05-03T14:00:00+02:00");
}

TEST_F(CalendarInvites, ASourceKeyThatMatchesNothingRulesOutTheTitle) {
    addEvent(work, "Sync", 14h);
    EXPECT_EQ(found({.sourceKey = "apple_calendar:id-0:event-0", .title = "Sync"}), "none");
}

TEST_F(CalendarInvites, ATitleIsComparedByItsLettersAndDigits) {
    addEvent(work, " Team  Sync - Q3!", 14h);
    addEvent(work, "", 15h);
    EXPECT_EQ(found({.title = "team sync q3"}), "2026-04-26T14:00:00+02:00");
    EXPECT_EQ(found({.title = "team sync"}), "none");
    EXPECT_EQ(found({.title = "untitled event"}), "2026-04-26T15:00:00+02:00");
}

TEST_F(CalendarInvites, ATitleOfPunctuationMatchesOneLikeIt) {
    addEvent(work, "Sync", 13h);
    addEvent(work, "***", 14h);
    EXPECT_EQ(found({.title = "?"}), "2026-04-26T14:00:00+02:00");
}

TEST_F(CalendarInvites, TheEarliestOfEqualTitlesIsFound) {
    addEvent(work, "Sync", 34h);
    addEvent(work, "sync!", 14h);
    addEvent(work, "Sync", 58h);
    EXPECT_EQ(found({.title = "Sync"}), "2026-04-26T14:00:00+02:00");
}

TEST_F(CalendarInvites, HolidayCalendarsAreNotSearched) {
    addEvent(addCalendar("Holidays"), "Sync", 14h);
    EXPECT_EQ(found({.title = "Sync"}), "none");
}

TEST_F(CalendarInvites, WithoutAStartTheSearchGoesFromAWeekAgoTo31DaysAhead) {
    const std::chrono::milliseconds at = 10h + 30min; // now, of that day
    const std::pair<std::chrono::milliseconds, bool> cases[] = {
        {at - 7 * 24h - 1h, false},
        {at - 7 * 24h - 1h + 1ms, true},
        {at + 31 * 24h - 1ms, true},
        {at + 31 * 24h, false},
    };
    for (const auto& [start, inside] : cases) {
        store.occurrences.clear();
        addEvent(work, "Sync", start);
        EXPECT_EQ(found({.title = "Sync"}) != "none", inside) << start.count();
    }
}

TEST_F(CalendarInvites, AStartSearchesADayAroundIt) {
    const std::pair<std::chrono::milliseconds, bool> cases[] = {
        {72h - 1h, false}, {72h - 1h + 1ms, true}, {96h, true}, {120h - 1ms, true}, {120h, false},
    };
    for (const auto& [start, inside] : cases) {
        store.occurrences.clear();
        addEvent(work, "Sync", start);
        EXPECT_EQ(found({.title = "Sync", .startAt = " 2026-04-30 00:00"}) != "none", inside) << start.count();
    }
}

TEST_F(CalendarInvites, TheSearchedDaysAreCalendarDays) {
    addEvent(work, "Sync", 0h, 0h).start = Instant{std::chrono::sys_days{std::chrono::year{2026} / 3 / 28}} + 9h;
    store.occurrences.back().end = store.occurrences.back().start + 1min;
    // 10:00 on the 28th is 23 hours before 10:00 on the 29th, which lost an hour.
    EXPECT_EQ(found({.title = "Sync", .startAt = "2026-03-29 10:00"}), "2026-03-28T10:00:00+01:00");
    store.occurrences.back().start -= 1min;
    store.occurrences.back().end -= 1min;
    EXPECT_EQ(found({.title = "Sync", .startAt = "2026-03-29 10:00"}), "none");
}

} // namespace
} // namespace vesk::VeskCalendarOperations
