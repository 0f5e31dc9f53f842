#include "VeskShellCore/CalendarOperations.hpp"

#include "tests/VeskShellCore/CalendarWorld.hpp"

namespace vesk::VeskCalendarOperations {
namespace {

using namespace std::chrono_literals;

/// What a caller may pass; the rest has the words of a plain meeting.
struct Arguments {
    std::string calendarName = "Work";
    std::string title = "Sync";
    std::string startAt = "2026-04-26 14:00";
    std::optional<std::string> endAt = {};
    bool allDay = false;
    std::optional<std::string> location = {};
    std::optional<std::string> notes = {};
};

class CalendarCreate : public test::CalendarWorld {
protected:
    CalendarCreate() { addCalendar("Work"); }

    Task<CapabilityCalendarCreateResponse> task(const Arguments& a) {
        return createEvent(platform, a.calendarName, a.title, a.startAt, a.endAt, a.allDay, a.location, a.notes,
                           platform.bundle);
    }
    CapabilityCalendarCreateResponse create(const Arguments& a) { return test::runTask(task(a)); }
};

TEST_F(CalendarCreate, AnEventWithoutAnEndLastsAnHour) {
    const auto response = create({});
    EXPECT_EQ(response.event.startAt, "2026-04-26T14:00:00+02:00");
    EXPECT_EQ(response.event.endAt, "2026-04-26T15:00:00+02:00");
    EXPECT_EQ(response.event.title, "Sync");
    EXPECT_EQ(response.event.calendarTitle, "Work");
    EXPECT_EQ(response.event.identifier, "saved-1");
    EXPECT_EQ(response.event.sourceKey, "apple_calendar:id-0:saved-1:2026-04-26T14:00:00+02:00");
    EXPECT_FALSE(response.event.allDay);
    EXPECT_EQ(response.brokerPath, "Vesk.app");
    EXPECT_EQ(response.bundlePath, "/Applications/Vesk.app");
    EXPECT_EQ(response.detail, "Created a new Apple Calendar event.");
}

TEST_F(CalendarCreate, TheStoreGetsTrimmedTextsAndNothingForBlankOnes) {
    create({.calendarName = " work\n",
            .title = "\tSync ",
            .endAt = " 2026-04-26 16:30 ",
            .location = " Room 1 ",
            .notes = " Bring tea\n"});
    create({.location = " ", .notes = ""});
    ASSERT_EQ(store.saved.size(), 2u);
    const NewEvent& full = store.saved[0];
    EXPECT_EQ(full.calendarIdentifier, "id-0");
    EXPECT_EQ(full.title, "Sync");
    EXPECT_EQ(full.start, midnight + 14h);
    EXPECT_EQ(full.end, midnight + 16h + 30min);
    EXPECT_FALSE(full.allDay);
    EXPECT_EQ(full.location, "Room 1");
    EXPECT_EQ(full.notes, "Bring tea");
    EXPECT_EQ(store.saved[1].location, std::nullopt);
    EXPECT_EQ(store.saved[1].notes, std::nullopt);
}

TEST_F(CalendarCreate, AllDayEventsLieBetweenMidnights) {
    const std::tuple<const char*, std::optional<std::string>, std::chrono::hours, std::chrono::hours> cases[] = {
        {"2026-04-26", std::nullopt, 0h, 24h},
        {"2026-04-26", "  ", 0h, 24h},
        {"2026-04-26", "2026-04-26", 0h, 24h},
        {"2026-04-26", "2026-04-28", 0h, 48h},
        {"2026-04-26 14:00", "2026-04-26 09:00", 0h, 24h},
        {"2026-04-26T23:00:00Z", std::nullopt, 24h, 48h},
    };
    for (const auto& [start, end, from, to] : cases) {
        const auto response = create({.startAt = start, .endAt = end, .allDay = true});
        EXPECT_TRUE(response.event.allDay);
        EXPECT_EQ(store.saved.back().start, midnight + from) << start;
        EXPECT_EQ(store.saved.back().end, midnight + to) << start;
        EXPECT_TRUE(store.saved.back().allDay);
    }
}

TEST_F(CalendarCreate, ADateIsAStartForAllDayEventsOnly) {
    EXPECT_EQ(failureOf(task({.startAt = "2026-04-26"})),
              "400 Invalid date/time: 2026-04-26. Use YYYY-MM-DD HH:MM, YYYY-MM-DDTHH:MM, or full ISO 8601.");
    EXPECT_NO_THROW(create({.startAt = "2026-04-26", .allDay = true}));
}

TEST_F(CalendarCreate, BadArgumentsFailInOrderBeforeAccessAndWithoutTheStore) {
    const std::pair<Arguments, const char*> cases[] = {
        {{.calendarName = " ", .title = " ", .startAt = "x"}, "64 Calendar name is required."},
        {{.title = "  ", .startAt = "x", .endAt = "y"}, "64 Event title is required."},
        {{.startAt = "x", .endAt = "y"},
         "400 Invalid date/time: x. Use YYYY-MM-DD HH:MM, YYYY-MM-DDTHH:MM, or full ISO 8601."},
        {{.startAt = " "}, "400 Event start time is required."},
        {{.endAt = "y"}, "400 Invalid date/time: y. Use YYYY-MM-DD HH:MM, YYYY-MM-DDTHH:MM, or full ISO 8601."},
        {{.endAt = "2026-04-26 14:00"}, "400 Event end time must be after the start time."},
        {{.endAt = "2026-04-26 13:00"}, "400 Event end time must be after the start time."},
        {{.startAt = "2026-03-29 02:30"},
         "400 Invalid date/time: 2026-03-29 02:30. Use YYYY-MM-DD HH:MM, YYYY-MM-DDTHH:MM, or full ISO 8601."},
        {{.startAt = "2026-02-30", .allDay = true}, "400 Invalid date: 2026-02-30. Expected YYYY-MM-DD."},
        {{.startAt = " ", .allDay = true}, "400 Event start time is required."},
        {{.startAt = "2026-04-26", .endAt = "2026-04-25", .allDay = true},
         "400 All-day event end date must be after the start date."},
    };
    grant(0);
    for (const auto& [arguments, failure] : cases) EXPECT_EQ(failureOf(task(arguments)), failure);
    EXPECT_TRUE(platform.fakeConsent.requests.empty());
    EXPECT_TRUE(store.calls.empty());
}

TEST_F(CalendarCreate, WithoutAccessNothingIsTouched) {
    grant(1);
    EXPECT_EQ(failureOf(task({})), "403 Calendar access is restricted by macOS or device policy.");
    EXPECT_TRUE(store.calls.empty());
}

TEST_F(CalendarCreate, AnUnknownCalendarFailsWithTheOnesThatExist) {
    addCalendar("US Holidays");
    EXPECT_EQ(failureOf(task({.calendarName = " Gym "})),
              "404 Calendar \"Gym\" was not found. Available calendars: Work");
    EXPECT_EQ(failureOf(task({.calendarName = "US Holidays"})),
              "404 Calendar \"US Holidays\" was not found. Available calendars: Work");
    EXPECT_TRUE(store.saved.empty());
}

TEST_F(CalendarCreate, TheStoreRefusesAReadOnlyCalendar) {
    addCalendar("Shared", false);
    try {
        create({.calendarName = "Shared"});
        FAIL() << "saved";
    } catch (const ErrorRecord& error) {
        EXPECT_EQ(error.domain(), "FakeEventStore");
        EXPECT_EQ(error.code(), 403);
    }
    EXPECT_EQ(store.calls, (std::vector<std::string>{"calendars", "save"}));
}

TEST_F(CalendarCreate, AFailedSavePassesThroughUnchanged) {
    store.saveFailure.emplace("NSPOSIXErrorDomain", 28, "No space left on device");
    try {
        create({});
        FAIL() << "saved";
    } catch (const ErrorRecord& error) {
        EXPECT_EQ(error.domain(), "NSPOSIXErrorDomain");
        EXPECT_EQ(error.code(), 28);
        EXPECT_EQ(error.description(), "No space left on device");
    }
    EXPECT_TRUE(store.occurrences.empty());
}

TEST_F(CalendarCreate, TimesAreOfTheUsersZone) {
    platform.fakeLocaleSettings.zone = "Asia/Kolkata";
    EXPECT_EQ(create({}).event.startAt, "2026-04-26T14:00:00+05:30");
    EXPECT_EQ(create({.startAt = "2026-04-26T14:00:00+02:00"}).event.startAt, "2026-04-26T17:30:00+05:30");
    platform.fakeLocaleSettings.zone = "Europe/Berlin";
    EXPECT_EQ(create({.startAt = "2026-10-25 02:30"}).event.startAt, "2026-10-25T02:30:00+01:00");
}

} // namespace
} // namespace vesk::VeskCalendarOperations
