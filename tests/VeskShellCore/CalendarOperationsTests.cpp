#include "VeskShellCore/CalendarOperations.hpp"

#include "VeskSupport/Iso8601.hpp"
#include "VeskSupport/LocalCalendar.hpp"
#include "tests/VeskShellCore/CalendarWorld.hpp"

namespace vesk::VeskCalendarOperations {
namespace {

using namespace std::chrono_literals;
using test::Titles;
using test::titlesOf;

const std::string denied =
    "403 Calendar access was denied for Vesk. Enable Calendar access in System Settings and try again.";

class CalendarReading : public test::CalendarWorld {
protected:
    using Events = CapabilityCalendarEventsResponse;
    auto calendars() { return test::runTask(listCalendars(platform, platform.bundle)); }
    Events today() { return test::runTask(listToday(platform, platform.bundle)); }
    Events forDate(const std::string& date) { return test::runTask(listForDate(platform, date, platform.bundle)); }
    Events inCalendar(const std::string& name) {
        return test::runTask(listCalendarToday(platform, name, platform.bundle));
    }
    Events next() { return test::runTask(nextEvent(platform, platform.bundle)); }
    Task<CapabilityCalendarSnapshotResponse> snapshotTask(const std::string& start, const std::string& end,
                                                          std::vector<std::string> identifiers = {},
                                                          std::vector<std::string> names = {}) {
        return snapshotEvents(platform, start, end, std::move(identifiers), std::move(names), platform.bundle);
    }
};

TEST_F(CalendarReading, ListsCalendarsInTheUsersAlphabet) {
    for (const char* title : {"zebra", "Work", "\u00e4rzte", "alpha", "US Holidays"}) addCalendar(title, false);
    const auto response = calendars();
    EXPECT_EQ(titlesOf(response.calendars), (Titles{"alpha", "\u00e4rzte", "Work", "zebra"}));
    EXPECT_EQ(response.calendars[2], (CapabilityCalendarDescriptor{"id-1", "Work", "On This Computer", false}));
    EXPECT_EQ(response.brokerPath, "Vesk.app");
    EXPECT_EQ(response.bundlePath, "/Applications/Vesk.app");
    EXPECT_EQ(response.detail, "Listed available Apple Calendar calendars.");
}

TEST_F(CalendarReading, TheAlphabetIsTheLocales) {
    for (const char* title : {"\u00e4rzte", "Zebra"}) addCalendar(title);
    platform.fakeLocaleSettings.identifier = "sv_SE";
    EXPECT_EQ(titlesOf(calendars().calendars), (Titles{"Zebra", "\u00e4rzte"}));
    platform.fakeLocaleSettings.identifier = "de_DE";
    EXPECT_EQ(titlesOf(calendars().calendars), (Titles{"\u00e4rzte", "Zebra"}));
}

TEST_F(CalendarReading, CalendarsThatDifferInCaseKeepTheStoresOrder) {
    for (const char* title : {"work", "Alpha", "WORK", "Work"}) addCalendar(title);
    EXPECT_EQ(titlesOf(calendars().calendars), (Titles{"Alpha", "work", "WORK", "Work"}));
}

TEST_F(CalendarReading, ListsNoCalendars) {
    addCalendar("  HOLIDAY plans ");
    EXPECT_TRUE(calendars().calendars.empty());
    EXPECT_EQ(calendars().detail, "No writable or readable calendars are currently available.");
}

TEST_F(CalendarReading, ABareExecutableHasNoBundlePath) {
    platform.bundle.path = "/usr/bin";
    EXPECT_EQ(calendars().brokerPath, "bin");
    EXPECT_EQ(calendars().bundlePath, std::nullopt);
}

TEST_F(CalendarReading, ListsToday) {
    const auto work = addCalendar("Work");
    addEvent(work, "Lunch", 12h);
    addEvent(work, "Breakfast", 8h);
    addEvent(work, "Tomorrow", 24h);
    addEvent(work, "Night shift", -2h, 8h);
    addEvent(work, "Yesterday", -2h, 2h);
    addEvent(addCalendar("Holidays"), "Holiday", 0h, 24h);
    const auto response = today();
    EXPECT_EQ(titlesOf(response.events), (Titles{"Night shift", "Breakfast", "Lunch"}));
    EXPECT_EQ(response.events[1].startAt, "2026-04-26T08:00:00+02:00");
    EXPECT_EQ(response.view, "today");
    EXPECT_EQ(response.requestedDate, std::nullopt);
    EXPECT_EQ(response.calendarName, std::nullopt);
    EXPECT_EQ(response.brokerPath, "Vesk.app");
    EXPECT_EQ(response.bundlePath, "/Applications/Vesk.app");
    EXPECT_EQ(response.detail, "Listed today's Apple Calendar events.");
}

TEST_F(CalendarReading, ListsNothingToday) {
    addCalendar("Work");
    EXPECT_EQ(today().detail, "No events are scheduled for today.");
    EXPECT_TRUE(today().events.empty());
}

TEST_F(CalendarReading, TodayIsTheDayOfTheUsersZone) {
    addEvent(addCalendar("Work"), "Evening in Honolulu", 7h); // 19:00 on the 25th there, where it is 22:30
    EXPECT_EQ(titlesOf(today().events), (Titles{"Evening in Honolulu"}));
    platform.fakeLocaleSettings.zone = "Pacific/Honolulu";
    EXPECT_EQ(titlesOf(today().events), (Titles{"Evening in Honolulu"}));
    platform.fakeLocaleSettings.zone = "Pacific/Kiritimati"; // 19:00 on the 26th, where it is 22:30
    EXPECT_EQ(today().events.at(0).startAt, "2026-04-26T19:00:00+14:00");
    platform.fakeClock.time = now + 2h;
    EXPECT_TRUE(today().events.empty());
}

TEST_F(CalendarReading, ADayOfADaylightSavingChangeHas23Or25Hours) {
    const auto work = addCalendar("Work");
    const LocalCalendar berlin("Europe/Berlin");
    for (const auto& [date, following] : {std::pair{"2026-03-29", "2026-03-30"}, {"2026-10-25", "2026-10-26"}}) {
        const Instant start = berlin.startOfDay(parseWallDay(following).value());
        store.occurrences.clear();
        addEvent(work, "last minute", start - 1min - midnight, 1min);
        addEvent(work, "following day", start - midnight, 1min);
        EXPECT_EQ(titlesOf(forDate(date).events), (Titles{"last minute"})) << date;
        EXPECT_EQ(titlesOf(forDate(following).events), (Titles{"following day"})) << following;
    }
}

TEST_F(CalendarReading, ListsADateAndEchoesItAsItCame) {
    addEvent(addCalendar("Work"), "Tomorrow", 24h);
    const auto response = forDate(" 2026-04-27\n");
    EXPECT_EQ(titlesOf(response.events), (Titles{"Tomorrow"}));
    EXPECT_EQ(response.view, "date");
    EXPECT_EQ(response.requestedDate, " 2026-04-27\n");
    EXPECT_EQ(response.calendarName, std::nullopt);
    EXPECT_EQ(response.detail, "Listed Apple Calendar events for the requested date.");
    EXPECT_EQ(forDate(" 2026-04-28").detail, "No events are scheduled for  2026-04-28.");
}

TEST_F(CalendarReading, ABadDateFailsBeforeAccess) {
    grant(0);
    EXPECT_EQ(failureOf(listForDate(platform, "soon", platform.bundle)),
              "400 Invalid date: soon. Expected YYYY-MM-DD.");
    EXPECT_TRUE(platform.fakeConsent.requests.empty());
    EXPECT_TRUE(store.calls.empty());
}

TEST_F(CalendarReading, ListsOneCalendarToday) {
    addEvent(addCalendar("Home"), "Dinner", 19h);
    const auto work = addCalendar("Work");
    addEvent(work, "Sync", 9h);
    addEvent(work, "Tomorrow", 25h);
    const auto response = inCalendar("  work ");
    EXPECT_EQ(titlesOf(response.events), (Titles{"Sync"}));
    EXPECT_EQ(response.view, "calendar");
    EXPECT_EQ(response.calendarName, "Work");
    EXPECT_EQ(response.requestedDate, std::nullopt);
    EXPECT_EQ(response.detail, "Listed today's events for the requested calendar.");
}

TEST_F(CalendarReading, ListsNothingInOneCalendarToday) {
    addEvent(addCalendar("Home"), "Dinner", 19h);
    addCalendar("Work");
    const auto response = inCalendar("WORK");
    EXPECT_TRUE(response.events.empty());
    EXPECT_EQ(response.detail, "No events are scheduled in Work today.");
}

TEST_F(CalendarReading, AnEmptyNameFailsBeforeAccess) {
    grant(2);
    EXPECT_EQ(failureOf(listCalendarToday(platform, " \n", platform.bundle)), "64 Calendar name is required.");
    EXPECT_EQ(failureOf(listCalendarToday(platform, "Work", platform.bundle)), denied);
    EXPECT_TRUE(store.calls.empty());
}

TEST_F(CalendarReading, AnUnknownNameFailsWithTheCalendarsThatExist) {
    for (const char* title : {"work", "Home", "Holidays"}) addCalendar(title);
    EXPECT_EQ(failureOf(listCalendarToday(platform, " Gym ", platform.bundle)),
              "404 Calendar \"Gym\" was not found. Available calendars: Home, work");
    EXPECT_EQ(failureOf(listCalendarToday(platform, "Holidays", platform.bundle)),
              "404 Calendar \"Holidays\" was not found. Available calendars: Home, work");
}

TEST_F(CalendarReading, AnEventInProgressIsNext) {
    const auto work = addCalendar("Work");
    addEvent(work, "Noon", 12h);
    addEvent(work, "Meeting", 10h);
    const auto response = next();
    EXPECT_EQ(titlesOf(response.events), (Titles{"Meeting"}));
    EXPECT_EQ(response.view, "next");
    EXPECT_EQ(response.requestedDate, std::nullopt);
    EXPECT_EQ(response.calendarName, std::nullopt);
    EXPECT_EQ(response.detail, "Reported the next upcoming Apple Calendar event.");
}

TEST_F(CalendarReading, AnAllDayEventIsNextUntilItsEnd) {
    const auto work = addCalendar("Work");
    addEvent(work, "Fair", 0h, 24h).allDay = true;
    addEvent(work, "Noon", 12h);
    EXPECT_EQ(titlesOf(next().events), (Titles{"Fair"}));
}

TEST_F(CalendarReading, AnEventThatEndsNowIsNotNext) {
    const auto work = addCalendar("Work");
    addEvent(work, "Over", 9h + 30min);
    addEvent(work, "Moment", 10h + 30min, 0h);
    EXPECT_EQ(next().detail, "No upcoming events are scheduled.");
    EXPECT_TRUE(next().events.empty());
    addEvent(work, "Later moment", 11h, 0h);
    EXPECT_EQ(titlesOf(next().events), (Titles{"Later moment"}));
}

TEST_F(CalendarReading, TheNextEventBeginsWithin365CalendarDays) {
    const auto work = addCalendar("Work");
    addEvent(work, "At the end", 365 * 24h + 10h + 30min); // exactly 365 days from now: outside
    EXPECT_TRUE(next().events.empty());
    addEvent(work, "Before the end", 365 * 24h + 10h + 30min - 1ms);
    EXPECT_EQ(titlesOf(next().events), (Titles{"Before the end"}));
}

TEST_F(CalendarReading, WideningWindowsAnswerAsTheWidestDoes) {
    const auto work = addCalendar("Work"), home = addCalendar("Home");
    const std::chrono::hours starts[] = {0h, 23h, 25h, 7 * 24h, 9 * 24h, 63 * 24h, 65 * 24h, 364 * 24h};
    for (const auto first : starts)
        for (const auto second : starts) {
            store.occurrences.clear();
            addEvent(work, "over", 9h, 30min);
            addEvent(work, "w", 10h + 30min + first, first == 0h ? 0h : 1h);
            addEvent(home, "h", 10h + 30min + second);
            const std::string expected = first != 0h && first < second ? "w" : "h";
            EXPECT_EQ(titlesOf(next().events), (Titles{expected})) << first.count() << " " << second.count();
        }
}

TEST_F(CalendarReading, ANearNextEventReadsOneNarrowWindow) {
    const auto work = addCalendar("Work");
    const auto reads = [&] {
        store.calls.clear();
        next();
        return std::count(store.calls.begin(), store.calls.end(), "events");
    };
    EXPECT_EQ(reads(), 4);
    addEvent(work, "In two weeks", 14 * 24h);
    EXPECT_EQ(reads(), 3);
    addEvent(work, "Later today", 20h);
    EXPECT_EQ(reads(), 1);
}

TEST_F(CalendarReading, SnapshotsARange) {
    const auto work = addCalendar("Work", false);
    addCalendar("Gym");
    addCalendar("alpha");
    addCalendar("Holidays");
    addEvent(work, "Lunch", 12h);
    addEvent(work, "Breakfast", 8h);
    addEvent(work, "After", 14h);
    const auto response = test::runTask(snapshotTask(" 2026-04-26 07:00", "2026-04-26T12:00:00Z"));
    EXPECT_EQ(response.startAt, "2026-04-26T07:00:00+02:00");
    EXPECT_EQ(response.endAt, "2026-04-26T14:00:00+02:00");
    EXPECT_EQ(titlesOf(response.calendars), (Titles{"Work", "Gym", "alpha"}));
    EXPECT_FALSE(response.calendars[0].allowsContentModifications);
    EXPECT_EQ(titlesOf(response.events), (Titles{"Breakfast", "Lunch"}));
    EXPECT_EQ(response.brokerPath, "Vesk.app");
    EXPECT_EQ(response.bundlePath, "/Applications/Vesk.app");
    EXPECT_EQ(response.detail, "Snapshotted Apple Calendar events in the requested range.");
}

TEST_F(CalendarReading, ASnapshotLeavesExcludedCalendarsOut) {
    addEvent(addCalendar("Work"), "Sync", 9h);
    addEvent(addCalendar("Home"), "Dinner", 19h);
    const auto without = [&](std::vector<std::string> identifiers, std::vector<std::string> names) {
        return test::runTask(snapshotTask("2026-04-26 00:00", "2026-04-27 00:00", identifiers, names));
    };
    EXPECT_EQ(titlesOf(without({}, {" work "}).calendars), (Titles{"Home"}));
    EXPECT_EQ(titlesOf(without({}, {" work "}).events), (Titles{"Dinner"}));
    EXPECT_EQ(titlesOf(without({"id-1"}, {}).events), (Titles{"Sync"}));
    EXPECT_EQ(titlesOf(without({""}, {""}).events), (Titles{"Sync", "Dinner"}));
    EXPECT_EQ(without({"id-0"}, {"home"}).detail,
              "No Apple Calendar events were found in the requested snapshot range.");
    EXPECT_TRUE(without({"id-0"}, {"home"}).calendars.empty());
}

TEST_F(CalendarReading, ASnapshotSpansAtMost31DaysOf24Hours) {
    const std::string tooLong = "400 Calendar snapshots are bounded to 31 days. Request a smaller range.";
    EXPECT_NO_THROW(test::runTask(snapshotTask("2026-05-01 00:00", "2026-06-01 00:00")));
    EXPECT_EQ(failureOf(snapshotTask("2026-05-01 00:00", "2026-06-01 00:00:01")), tooLong);
    EXPECT_EQ(failureOf(snapshotTask("2026-05-01T00:00:00Z", "2026-06-01T00:00:00.001Z")), tooLong);
    // Hours count and not dates: October has an hour more, March one less.
    EXPECT_EQ(failureOf(snapshotTask("2026-10-01 00:00", "2026-11-01 00:00")), tooLong);
    EXPECT_NO_THROW(test::runTask(snapshotTask("2026-03-01 00:00", "2026-04-01 01:00")));
}

TEST_F(CalendarReading, ASnapshotMustEndAfterItsStart) {
    const std::string notAfter = "400 Calendar snapshot end time must be after the start time.";
    EXPECT_EQ(failureOf(snapshotTask("2026-04-26 09:00", "2026-04-26 09:00")), notAfter);
    EXPECT_EQ(failureOf(snapshotTask("2026-04-26 09:00", "2026-04-25 09:00")), notAfter);
    EXPECT_EQ(failureOf(snapshotTask("2026-08-26 09:00", "2026-04-25 09:00")), notAfter);
}

TEST_F(CalendarReading, SnapshotArgumentsFailInOrderAndBeforeAccess) {
    grant(2);
    EXPECT_EQ(failureOf(snapshotTask("x", "y")),
              "400 Invalid date/time: x. Use YYYY-MM-DD HH:MM, YYYY-MM-DDTHH:MM, or full ISO 8601.");
    EXPECT_EQ(failureOf(snapshotTask("2026-04-26 09:00", " y")),
              "400 Invalid date/time:  y. Use YYYY-MM-DD HH:MM, YYYY-MM-DDTHH:MM, or full ISO 8601.");
    EXPECT_EQ(failureOf(snapshotTask("2026-04-26 09:00", "2027-04-26 09:00")),
              "400 Calendar snapshots are bounded to 31 days. Request a smaller range.");
    EXPECT_EQ(failureOf(snapshotTask("2026-04-26 09:00", "2026-04-27 09:00")), denied);
    EXPECT_TRUE(store.calls.empty());
}

TEST_F(CalendarReading, NoOperationTouchesTheStoreWithoutAccess) {
    grant(2);
    EXPECT_EQ(failureOf(listCalendars(platform, platform.bundle)), denied);
    EXPECT_EQ(failureOf(listToday(platform, platform.bundle)), denied);
    EXPECT_EQ(failureOf(listForDate(platform, "2026-04-26", platform.bundle)), denied);
    EXPECT_EQ(failureOf(nextEvent(platform, platform.bundle)), denied);
    EXPECT_TRUE(store.calls.empty());
    EXPECT_TRUE(platform.fakeConsent.requests.empty());
}

TEST_F(CalendarReading, AccessIsAskedForOnceAndTheListingFollows) {
    grant(0);
    platform.fakeConsent.answer.granted = true;
    addEvent(addCalendar("Work"), "Sync", 9h);
    EXPECT_EQ(titlesOf(today().events), (Titles{"Sync"}));
    EXPECT_EQ(platform.fakeConsent.requests, std::vector<std::string>{"access 1"});
}

} // namespace
} // namespace vesk::VeskCalendarOperations
