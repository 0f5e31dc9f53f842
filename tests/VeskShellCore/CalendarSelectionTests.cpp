#include "VeskShellCore/CalendarSelection.hpp"

#include "tests/VeskShellCore/CalendarWorld.hpp"

namespace vesk::VeskCalendarOperations {
namespace {

using namespace std::chrono_literals;
using test::Titles;
using test::titlesOf;

class CalendarSelection : public test::CalendarWorld {
protected:
    std::vector<EventCalendar> eligible() { return eligibleCalendars(store); }
    std::optional<std::string> found(const std::string& name) {
        const auto calendar = findCalendar(name, eligible(), platform.fakeLocaleSettings);
        return calendar ? std::optional(calendar->title) : std::nullopt;
    }
    std::vector<CalendarEvent> eventsOfTheDay() { return fetchEvents(store, eligible(), midnight, midnight + 24h); }
    Titles orderedEvents() {
        Titles titles;
        for (const CalendarEvent& event : eventsOfTheDay()) titles.push_back(event.title.value_or("none"));
        return titles;
    }
};

TEST_F(CalendarSelection, HolidayCalendarsDoNotExist) {
    for (const char* title : {"Work", "US Holidays", "  HOLIDAY plans ", "Home", "myholidaycalendar"})
        addCalendar(title);
    EXPECT_EQ(titlesOf(eligible()), (Titles{"Work", "Home"}));
}

TEST_F(CalendarSelection, EligibleCalendarsKeepTheStoresOrder) {
    for (const char* title : {"b", "C", "a"}) addCalendar(title);
    EXPECT_EQ(titlesOf(eligible()), (Titles{"b", "C", "a"}));
}

TEST_F(CalendarSelection, ANameFindsAnotherCase) {
    addCalendar("Work");
    EXPECT_EQ(found("work"), "Work");
    EXPECT_EQ(found("WORK"), "Work");
}

TEST_F(CalendarSelection, AnExactTitleWinsOverAnEarlierOtherCase) {
    addCalendar("Work");
    addCalendar("work");
    EXPECT_EQ(found("work"), "work");
    EXPECT_EQ(found("WORK"), "Work");
}

TEST_F(CalendarSelection, TheFirstOfEqualTitlesIsFound) {
    addCalendar("Work");
    addCalendar("Work");
    EXPECT_EQ(findCalendar("Work", eligible(), platform.fakeLocaleSettings)->identifier, "id-0");
}

TEST_F(CalendarSelection, TitlesAreNotTrimmedForAName) {
    addCalendar(" Work ");
    EXPECT_EQ(found("Work"), std::nullopt);
    EXPECT_EQ(found(" work "), " Work ");
}

TEST_F(CalendarSelection, AccentsDivideTitlesAndCaseOfOtherScriptsDoesNot) {
    addCalendar("\u00dcbung");
    EXPECT_EQ(found("\u00fcbung"), "\u00dcbung");
    EXPECT_EQ(found("ubung"), std::nullopt);
}

TEST_F(CalendarSelection, HolidayCalendarsAreNotFound) {
    addCalendar("Holiday");
    EXPECT_EQ(found("Holiday"), std::nullopt);
}

TEST_F(CalendarSelection, TheNotFoundFailureNamesTheCalendarsInPlainOrder) {
    for (const char* title : {"beta", "Zeta", "\u00c4rzte", "Alpha", "Holidays"}) addCalendar(title);
    const CalendarError error = calendarNotFoundError("Gym", eligible());
    EXPECT_EQ(error.code(), 404);
    EXPECT_EQ(error.description(),
              "Calendar \"Gym\" was not found. Available calendars: Alpha, Zeta, beta, \u00c4rzte");
    EXPECT_EQ(calendarNotFoundError("Gym", {}).description(), "Calendar \"Gym\" was not found. Available calendars: ");
}

TEST_F(CalendarSelection, ExclusionsAreExactIdentifiersAndWholeTitles) {
    for (const char* title : {"Work", " HOME ", "Gym", "Workshop"}) addCalendar(title);
    const auto left = [&](const std::vector<std::string>& identifiers, const std::vector<std::string>& names) {
        return titlesOf(filterExcludedCalendars(eligible(), identifiers, names));
    };
    EXPECT_EQ(left({}, {}), (Titles{"Work", " HOME ", "Gym", "Workshop"}));
    EXPECT_EQ(left({}, {" work "}), (Titles{" HOME ", "Gym", "Workshop"}));
    EXPECT_EQ(left({}, {"home", "Wor"}), (Titles{"Work", "Gym", "Workshop"}));
    EXPECT_EQ(left({"\tid-2 "}, {}), (Titles{"Work", " HOME ", "Workshop"}));
    EXPECT_EQ(left({"ID-2", "id", "Work"}, {"id-2"}), (Titles{"Work", " HOME ", "Gym", "Workshop"}));
    EXPECT_EQ(left({"id-0"}, {"GYM"}), (Titles{" HOME ", "Workshop"}));
}

TEST_F(CalendarSelection, EmptyExclusionsExcludeNothing) {
    store.add({"", "", "On This Computer", true});
    addCalendar(" ");
    EXPECT_EQ(filterExcludedCalendars(eligible(), {"", " "}, {"", "\n"}).size(), 2u);
}

TEST_F(CalendarSelection, EventsComeByTheirStart) {
    const auto work = addCalendar("Work");
    addEvent(work, "a late", 12h);
    addEvent(work, "z early", 9h);
    addEvent(work, "middle", 9h + 1ms);
    EXPECT_EQ(orderedEvents(), (Titles{"z early", "middle", "a late"}));
}

TEST_F(CalendarSelection, EventsOfOneStartComeByCalendarTitleByCodePoint) {
    int countdown = 9; // the event titles alone would give another order
    for (const char* title : {"Alpha", "alpha", "\u00e9t\u00e9", "Zeta", "beta"})
        addEvent(addCalendar(title), std::to_string(countdown--) + " in " + title, 9h);
    EXPECT_EQ(orderedEvents(), (Titles{"9 in Alpha", "6 in Zeta", "8 in alpha", "5 in beta", "7 in \u00e9t\u00e9"}));
}

TEST_F(CalendarSelection, EventsOfOneCalendarAndStartComeByTheTitleToShow) {
    const auto work = addCalendar("Work");
    addEvent(work, "alpha", 9h);
    addEvent(work, "  Zeta ", 9h);
    addEvent(work, "", 9h); // "(Untitled Event)" sorts before letters
    addEvent(work, "!first", 9h);
    EXPECT_EQ(orderedEvents(), (Titles{"!first", "", "  Zeta ", "alpha"}));
}

TEST_F(CalendarSelection, EqualEventsKeepTheStoresOrder) {
    const auto work = addCalendar("Work");
    for (const char* identifier : {"third", "first", "second"}) addEvent(work, "Same", 9h).identifier = identifier;
    std::vector<std::string> identifiers;
    for (const CalendarEvent& event : eventsOfTheDay()) identifiers.push_back(event.identifier);
    EXPECT_EQ(identifiers, (std::vector<std::string>{"third", "first", "second"}));
}

TEST_F(CalendarSelection, OnlyTheGivenCalendarsAndTheWindowCount) {
    const auto work = addCalendar("Work");
    addEvent(work, "today", 9h);
    addEvent(work, "tomorrow", 24h);
    addEvent(work, "yesterday", -1h);
    addEvent(work, "over midnight", -30min);
    addEvent(addCalendar("Holidays"), "holiday", 9h);
    EXPECT_EQ(orderedEvents(), (Titles{"over midnight", "today"}));
}

} // namespace
} // namespace vesk::VeskCalendarOperations
