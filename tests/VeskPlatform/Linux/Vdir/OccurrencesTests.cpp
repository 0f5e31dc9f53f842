#include "tests/VeskPlatform/Linux/Vdir/CalendarText.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using ::testing::ElementsAreArray;

using Spans = std::vector<std::string>;

/// One event, a window, and what is listed, all on the wall of one zone.
struct EventCase {
    std::string name, lines, from, to;
    Spans expected;
};

void expectOccurrences(const std::vector<EventCase>& cases, const std::string& localZone) {
    for (const EventCase& given : cases) {
        SCOPED_TRACE(given.name + " in " + localZone);
        CalendarText text(calendarOfEvent("UID:u\n" + given.lines), localZone);
        EXPECT_THAT(text.occurrences(given.from, given.to, localZone), ElementsAreArray(given.expected));
    }
}

TEST(OccurrencesWindow, TakesWhatStartsBeforeItsEndAndEndsBehindItsStart) {
    const std::string oneHour = "DTSTART:20240110T090000\nDTEND:20240110T100000\n";
    const std::string noLength = "DTSTART:20240110T090000\n";
    const Spans hour{"20240110T090000/20240110T100000"}, moment{"20240110T090000/20240110T090000"};
    expectOccurrences(
        {
            {"inside", oneHour, "20240110T080000", "20240110T120000", hour},
            {"window inside the event", oneHour, "20240110T092000", "20240110T094000", hour},
            {"event ends at the window's start", oneHour, "20240110T100000", "20240110T120000", {}},
            {"event ends just behind the window's start", oneHour, "20240110T095959", "20240110T120000", hour},
            {"event starts at the window's end", oneHour, "20240110T080000", "20240110T090000", {}},
            {"event starts just before the window's end", oneHour, "20240110T080000", "20240110T090001", hour},
            {"no length at the window's start", noLength, "20240110T090000", "20240110T100000", moment},
            {"no length at the window's end", noLength, "20240110T080000", "20240110T090000", {}},
            {"no length before the window", noLength, "20240110T090001", "20240110T100000", {}},
            {"no length, recurring, at both ends",
             noLength + "RRULE:FREQ=HOURLY\n",
             "20240110T100000",
             "20240110T120000",
             {"20240110T100000/20240110T100000", "20240110T110000/20240110T110000"}},
            {"recurring, window inside an occurrence",
             oneHour + "RRULE:FREQ=DAILY\n",
             "20240210T091500",
             "20240210T092000",
             {"20240210T090000/20240210T100000"}},
            {"longer than its own step",
             "DTSTART:20240110T090000\nDURATION:PT60H\nRRULE:FREQ=DAILY;COUNT=9\n",
             "20240114T100000",
             "20240114T110000",
             {"20240112T090000/20240114T210000", "20240113T090000/20240115T210000", "20240114T090000/20240116T210000"}},
            {"empty window inside an event", oneHour, "20240110T093000", "20240110T093000", hour},
        },
        "Europe/Berlin");
}

TEST(OccurrencesLength, FollowsEndDurationOrTheDefaults) {
    expectOccurrences(
        {
            {"all-day without an end",
             "DTSTART;VALUE=DATE:20240110\n",
             "20240101",
             "20240201",
             {"20240110T000000/20240111T000000"}},
            {"all-day end is exclusive",
             "DTSTART;VALUE=DATE:20240110\nDTEND;VALUE=DATE:20240113\n",
             "20240101",
             "20240201",
             {"20240110T000000/20240113T000000"}},
            {"all-day end at its start",
             "DTSTART;VALUE=DATE:20240110\nDTEND;VALUE=DATE:20240110\n",
             "20240101",
             "20240201",
             {"20240110T000000/20240111T000000"}},
            {"all-day end before its start",
             "DTSTART;VALUE=DATE:20240110\nDTEND;VALUE=DATE:20240108\n",
             "20240101",
             "20240201",
             {"20240110T000000/20240111T000000"}},
            {"all-day with a duration",
             "DTSTART;VALUE=DATE:20240110\nDURATION:P3D\n",
             "20240101",
             "20240201",
             {"20240110T000000/20240113T000000"}},
            {"end before the start",
             "DTSTART:20240110T090000\nDTEND:20240110T080000\n",
             "20240101",
             "20240201",
             {"20240110T090000/20240110T090000"}},
            {"negative duration",
             "DTSTART:20240110T090000\nDURATION:-PT1H\n",
             "20240101",
             "20240201",
             {"20240110T090000/20240110T090000"}},
            {"duration of weeks",
             "DTSTART:20240110T090000\nDURATION:P2W\n",
             "20240101",
             "20240201",
             {"20240110T090000/20240124T090000"}},
            {"several days, window on the last",
             "DTSTART:20240110T220000\nDTEND:20240113T020000\n",
             "20240113",
             "20240114",
             {"20240110T220000/20240113T020000"}},
            {"all-day of several days, window on the last",
             "DTSTART;VALUE=DATE:20240110\nDTEND;VALUE=DATE:20240113\nRRULE:FREQ=WEEKLY\n",
             "20240119",
             "20240120",
             {"20240117T000000/20240120T000000"}},
            {"end in another zone",
             "DTSTART;TZID=Europe/Berlin:20240110T090000\nDTEND;TZID=Asia/Tokyo:20240110T180000\n",
             "20240101",
             "20240201",
             {"20240110T090000/20240110T100000"}},
        },
        "Europe/Berlin");
}

TEST(OccurrencesLength, IsNominalForADurationAndExactForAnEndAcrossChangesOfTheOffset) {
    // Clocks go forward on 31 March 2024 and back on 27 October 2024.
    expectOccurrences(
        {
            {"DURATION of a day keeps the wall",
             "DTSTART:20240330T090000\nDURATION:P1D\n",
             "20240330",
             "20240402",
             {"20240330T090000/20240331T090000"}},
            {"DURATION of 24 hours does not",
             "DTSTART:20240330T090000\nDURATION:PT24H\n",
             "20240330",
             "20240402",
             {"20240330T090000/20240331T100000"}},
            {"day and hours",
             "DTSTART:20241026T090000\nDURATION:P1DT2H\n",
             "20241026",
             "20241029",
             {"20241026T090000/20241027T110000"}},
            {"DTEND is the same exact length each time",
             "DTSTART:20240329T090000\nDTEND:20240330T090000\nRRULE:FREQ=DAILY;COUNT=2\n",
             "20240328",
             "20240403",
             {"20240329T090000/20240330T090000", "20240330T090000/20240331T100000"}},
            {"DURATION in days is the same wall each time",
             "DTSTART:20240329T090000\nDURATION:P1D\nRRULE:FREQ=DAILY;COUNT=2\n",
             "20240328",
             "20240403",
             {"20240329T090000/20240330T090000", "20240330T090000/20240331T090000"}},
            {"all-day days are days of the wall",
             "DTSTART;VALUE=DATE:20240330\nDURATION:P2D\n",
             "20240330",
             "20240402",
             {"20240330T000000/20240401T000000"}},
        },
        "Europe/Berlin");
}

TEST(OccurrencesLocalTimes, ThatAreSkippedUseTheOffsetBeforeTheGap) {
    expectOccurrences(
        {
            {"single",
             "DTSTART:20240331T023000\nDURATION:PT15M\n",
             "20240331",
             "20240401",
             {"20240331T033000/20240331T034500"}},
            {"recurring",
             "DTSTART:20240330T023000\nDURATION:PT15M\nRRULE:FREQ=DAILY;COUNT=3\n",
             "20240330",
             "20240402",
             {"20240330T023000/20240330T024500", "20240331T033000/20240331T034500", "20240401T023000/20240401T024500"}},
            {"recurring, window that begins behind the skipped time",
             "DTSTART:20240301T023000\nDURATION:PT15M\nRRULE:FREQ=DAILY\n",
             "20240331T031500",
             "20240331T040000",
             {"20240331T033000/20240331T034500"}},
            {"hours that meet behind the gap count once",
             "DTSTART:20240331T013000\nRRULE:FREQ=HOURLY;COUNT=4\n",
             "20240331",
             "20240401",
             {"20240331T013000/20240331T013000", "20240331T033000/20240331T033000", "20240331T043000/20240331T043000"}},
        },
        "Europe/Berlin");
}

TEST(OccurrencesLocalTimes, ThatAreRepeatedMeanTheFirst) {
    CalendarText text(calendarOfEvent("DTSTART;TZID=Europe/Berlin:20241026T023000\nRRULE:FREQ=DAILY;COUNT=3\n"));
    EXPECT_THAT(text.occurrences("20241020", "20241101"),
                ElementsAreArray(Spans{"20241026T003000/20241026T003000", "20241027T003000/20241027T003000",
                                       "20241028T013000/20241028T013000"}));
}

TEST(OccurrencesLocalTimes, KeepTheirWallAcrossChangesOfTheOffset) {
    CalendarText text(calendarOfEvent("DTSTART;TZID=America/New_York:20240309T090000\nDURATION:PT1H\n"
                                      "RRULE:FREQ=DAILY;COUNT=3\n"));
    EXPECT_THAT(text.occurrences("20240301", "20240401"),
                ElementsAreArray(Spans{"20240309T140000/20240309T150000", "20240310T130000/20240310T140000",
                                       "20240311T130000/20240311T140000"}));
}

TEST(OccurrencesLocalTimes, OnADayThatAZoneLeftOutMoveToTheNext) {
    expectOccurrences({{"Samoa left out 30 December 2011",
                        "DTSTART:20111229T090000\nRRULE:FREQ=DAILY;COUNT=3\n",
                        "20111229",
                        "20120102",
                        {"20111229T090000/20111229T090000", "20111231T090000/20111231T090000"}}},
                      "Pacific/Apia");
}

TEST(OccurrencesAllDay, StartAtTheLocalMidnightOfEveryZone) {
    const std::string lines = "DTSTART;VALUE=DATE:20240310\nRRULE:FREQ=DAILY;COUNT=2\n";
    for (const std::string zone :
         {"Europe/Berlin", "America/New_York", "Pacific/Kiritimati", "Pacific/Pago_Pago", "UTC"})
        expectOccurrences({{"two days",
                            lines,
                            "20240310",
                            "20240312",
                            {"20240310T000000/20240311T000000", "20240311T000000/20240312T000000"}}},
                          zone);
}

TEST(OccurrencesAllDay, StartWhereTheDayStartsWhenMidnightIsSkipped) {
    // Clocks in Beirut went from midnight to one o'clock on 31 March 2024.
    expectOccurrences(
        {{"no midnight", "DTSTART;VALUE=DATE:20240331\n", "20240331", "20240402", {"20240331T010000/20240401T000000"}}},
        "Asia/Beirut");
}

TEST(OccurrencesFloating, HaveTheWallTimeOfEveryZone) {
    const std::string lines = "DTSTART:20240310T090000\nDTEND:20240310T100000\n";
    for (const std::string zone : {"Europe/Berlin", "America/New_York", "Pacific/Kiritimati", "UTC"})
        expectOccurrences({{"nine", lines, "20240310", "20240311", {"20240310T090000/20240310T100000"}}}, zone);
}

TEST(OccurrencesUntil, IsAnInstantALocalTimeOrADate) {
    const std::string start = "DTSTART;TZID=Europe/Berlin:20240101T233000\n";
    const Spans three{"20240101T233000/20240101T233000", "20240102T233000/20240102T233000",
                      "20240103T233000/20240103T233000"};
    expectOccurrences(
        {
            {"UTC, at the last", start + "RRULE:FREQ=DAILY;UNTIL=20240103T223000Z\n", "20240101", "20240201", three},
            {"UTC, a second short",
             start + "RRULE:FREQ=DAILY;UNTIL=20240103T222959Z\n",
             "20240101",
             "20240201",
             {three[0], three[1]}},
            {"local, at the last", start + "RRULE:FREQ=DAILY;UNTIL=20240103T233000\n", "20240101", "20240201", three},
            {"a date", start + "RRULE:FREQ=DAILY;UNTIL=20240103\n", "20240101", "20240201", three},
            {"all-day, UTC, its date",
             "DTSTART;VALUE=DATE:20240101\nRRULE:FREQ=DAILY;UNTIL=20240102T000000Z\n",
             "20240101",
             "20240201",
             {"20240101T000000/20240102T000000", "20240102T000000/20240103T000000"}},
            {"all-day, UTC, late on its date",
             "DTSTART;VALUE=DATE:20240101\nRRULE:FREQ=DAILY;UNTIL=20240102T235959Z\n",
             "20240101",
             "20240201",
             {"20240101T000000/20240102T000000", "20240102T000000/20240103T000000"}},
            {"UTC in the second pass of a repeated hour",
             "DTSTART:20241026T023000\nRRULE:FREQ=DAILY;UNTIL=20241027T011000Z\n",
             "20241020",
             "20241101",
             {"20241026T023000/20241026T023000", "20241027T023000/20241027T023000"}},
            {"UTC just behind a gap that moves the last",
             "DTSTART:20240330T023000\nRRULE:FREQ=DAILY;UNTIL=20240331T011000Z\n",
             "20240320",
             "20240410",
             {"20240330T023000/20240330T023000"}},
        },
        "Europe/Berlin");
}

TEST(OccurrencesExcluded, ByExdateAndExrule) {
    const std::string start = "DTSTART;TZID=Europe/Berlin:20240101T090000\nRRULE:FREQ=DAILY;COUNT=4\n";
    const std::string one = "20240101T090000/20240101T090000", two = "20240102T090000/20240102T090000",
                      three = "20240103T090000/20240103T090000", four = "20240104T090000/20240104T090000";
    const std::string from = "20240101", to = "20240201";
    expectOccurrences(
        {
            {"its own zone", start + "EXDATE;TZID=Europe/Berlin:20240102T090000\n", from, to, {one, three, four}},
            {"UTC", start + "EXDATE:20240102T080000Z\n", from, to, {one, three, four}},
            {"another zone", start + "EXDATE;TZID=Asia/Tokyo:20240102T170000\n", from, to, {one, three, four}},
            {"floating", start + "EXDATE:20240102T090000\n", from, to, {one, three, four}},
            {"several in one line", start + "EXDATE:20240102T080000Z,20240103T080000Z\n", from, to, {one, four}},
            {"several in one zoned line",
             start + "EXDATE;TZID=Europe/Berlin:20240102T090000,20240103T090000\n",
             from,
             to,
             {one, four}},
            {"several lines", start + "EXDATE:20240102T080000Z\nEXDATE:20240104T080000Z\n", from, to, {one, three}},
            {"a date means the day", start + "EXDATE;VALUE=DATE:20240102,20240103\n", from, to, {one, four}},
            {"the first", start + "EXDATE:20240101T080000Z\n", from, to, {two, three, four}},
            {"another time of the day", start + "EXDATE:20240102T090000Z\n", from, to, {one, two, three, four}},
            {"EXRULE", start + "EXRULE:FREQ=DAILY;INTERVAL=2\n", from, to, {two, four}},
            {"EXRULE takes an RDATE",
             start + "RDATE:20240105T080000Z\nEXRULE:FREQ=DAILY;BYDAY=FR\n",
             from,
             to,
             {one, two, three, four}},
            {"all-day by date",
             "DTSTART;VALUE=DATE:20240101\nRRULE:FREQ=DAILY;COUNT=2\nEXDATE;VALUE=DATE:20240101\n",
             from,
             to,
             {"20240102T000000/20240103T000000"}},
            {"all-day by time",
             "DTSTART;VALUE=DATE:20240101\nRRULE:FREQ=DAILY;COUNT=2\nEXDATE:20240101T000000Z\n",
             from,
             to,
             {"20240102T000000/20240103T000000"}},
        },
        "Europe/Berlin");
}

TEST(OccurrencesExtra, ByRdate) {
    const std::string start = "DTSTART;TZID=Europe/Berlin:20240101T090000\nDURATION:PT1H\n";
    const std::string one = "20240101T090000/20240101T100000";
    const std::string from = "20240101", to = "20240201";
    expectOccurrences(
        {
            {"its own zone",
             start + "RDATE;TZID=Europe/Berlin:20240105T110000\n",
             from,
             to,
             {one, "20240105T110000/20240105T120000"}},
            {"UTC", start + "RDATE:20240105T100000Z\n", from, to, {one, "20240105T110000/20240105T120000"}},
            {"another zone",
             start + "RDATE;TZID=Asia/Tokyo:20240105T190000\n",
             from,
             to,
             {one, "20240105T110000/20240105T120000"}},
            {"a date has the time of the start",
             start + "RDATE;VALUE=DATE:20240105\n",
             from,
             to,
             {one, "20240105T090000/20240105T100000"}},
            {"several in one line",
             start + "RDATE:20240105T100000Z,20240104T100000Z\n",
             from,
             to,
             {one, "20240104T110000/20240104T120000", "20240105T110000/20240105T120000"}},
            {"period with an end",
             start + "RDATE;VALUE=PERIOD:20240105T100000Z/20240105T130000Z\n",
             from,
             to,
             {one, "20240105T110000/20240105T140000"}},
            {"period with a duration",
             start + "RDATE;VALUE=PERIOD:20240105T100000Z/PT30M\n",
             from,
             to,
             {one, "20240105T110000/20240105T113000"}},
            {"period in a zone",
             start + "RDATE;VALUE=PERIOD;TZID=Asia/Tokyo:20240105T190000/20240105T200000\n",
             from,
             to,
             {one, "20240105T110000/20240105T120000"}},
            {"period that ends before it starts",
             start + "RDATE;VALUE=PERIOD:20240105T100000Z/20240105T090000Z\n",
             from,
             to,
             {one, "20240105T110000/20240105T110000"}},
            {"period at a time of the rule",
             start + "RRULE:FREQ=DAILY;COUNT=2\nRDATE;VALUE=PERIOD:20240102T080000Z/PT3H\n",
             from,
             to,
             {one, "20240102T090000/20240102T120000"}},
            {"the start once more", start + "RDATE:20240101T080000Z\n", from, to, {one}},
            {"all-day",
             "DTSTART;VALUE=DATE:20240101\nRDATE;VALUE=DATE:20240105\n",
             from,
             to,
             {"20240101T000000/20240102T000000", "20240105T000000/20240106T000000"}},
            {"long period, window behind its first day",
             start + "RDATE;VALUE=PERIOD:20240105T100000Z/P5D\n",
             "20240108",
             "20240109",
             {"20240105T110000/20240110T110000"}},
        },
        "Europe/Berlin");
}

TEST(OccurrencesExtra, KeepThePassOfARepeatedHour) {
    CalendarText text(calendarOfEvent("DTSTART;TZID=Europe/Berlin:20241001T023000\nRDATE:20241027T013000Z\n"));
    EXPECT_THAT(text.occurrences("20241027", "20241028"), ElementsAreArray(Spans{"20241027T013000/20241027T013000"}));
}

TEST(OccurrencesCutOff, LeavesADayOfSecondsWhole) {
    CalendarText text(calendarOfEvent("DTSTART:20000101T000000Z\nRRULE:FREQ=SECONDLY\n"), "Europe/Berlin");
    const auto found = text.occurrences("20240110", "20240111");
    ASSERT_EQ(found.size(), 86'400U);
    EXPECT_EQ(found.front(), "20240110T000000/20240110T000000");
    EXPECT_EQ(found.back(), "20240110T235959/20240110T235959");
}

// ---- Overrides ------------------------------------------------------------------------------------------------

struct OverrideCase {
    std::string name, masterLines;
    std::vector<std::string> overrides;
    Spans expected;
};

void expectOverridden(const std::vector<OverrideCase>& cases) {
    for (const OverrideCase& given : cases) {
        SCOPED_TRACE(given.name);
        std::string components;
        if (!given.masterLines.empty()) components += event("UID:u\nSUMMARY:m\n" + given.masterLines);
        for (const std::string& lines : given.overrides) components += event("UID:u\nSUMMARY:o\n" + lines);
        CalendarText text(calendar(components), "Europe/Berlin");
        EXPECT_THAT(text.occurrences("20240101", "20240201", "Europe/Berlin"), ElementsAreArray(given.expected));
    }
}

const std::string dailyInBerlin =
    "DTSTART;TZID=Europe/Berlin:20240101T090000\nDURATION:PT1H\nRRULE:FREQ=DAILY;COUNT=3\n";
const std::string dayOne = "20240101T090000/20240101T100000 m", dayTwo = "20240102T090000/20240102T100000 m",
                  dayThree = "20240103T090000/20240103T100000 m";

TEST(OccurrencesOverride, ReplacesTheOccurrenceThatItNames) {
    const std::string noon = "DTSTART;TZID=Europe/Berlin:20240102T120000\nDURATION:PT1H\n";
    const Spans moved{dayOne, "20240102T120000/20240102T130000 o", dayThree};
    expectOverridden({
        {"moved within its day", dailyInBerlin, {"RECURRENCE-ID;TZID=Europe/Berlin:20240102T090000\n" + noon}, moved},
        {"named in UTC", dailyInBerlin, {"RECURRENCE-ID:20240102T080000Z\n" + noon}, moved},
        {"named in another zone", dailyInBerlin, {"RECURRENCE-ID;TZID=Asia/Tokyo:20240102T170000\n" + noon}, moved},
        {"named by its date", dailyInBerlin, {"RECURRENCE-ID;VALUE=DATE:20240102\n" + noon}, moved},
        {"moved to another day",
         dailyInBerlin,
         {"RECURRENCE-ID:20240102T080000Z\nDTSTART;TZID=Europe/Berlin:20240110T120000\nDURATION:PT1H\n"},
         {dayOne, dayThree, "20240110T120000/20240110T130000 o"}},
        {"moved out of the window",
         dailyInBerlin,
         {"RECURRENCE-ID:20240102T080000Z\nDTSTART;TZID=Europe/Berlin:20250110T120000\nDURATION:PT1H\n"},
         {dayOne, dayThree}},
        {"moved into the window",
         "DTSTART;TZID=Europe/Berlin:20220101T090000\nDURATION:PT1H\nRRULE:FREQ=DAILY;COUNT=3\n",
         {"RECURRENCE-ID:20220102T080000Z\nDTSTART;TZID=Europe/Berlin:20240110T120000\nDURATION:PT1H\n"},
         {"20240110T120000/20240110T130000 o"}},
        {"all-day instead of timed",
         dailyInBerlin,
         {"RECURRENCE-ID:20240102T080000Z\nDTSTART;VALUE=DATE:20240102\n"},
         {dayOne, "20240102T000000/20240103T000000 o", dayThree}},
        {"timed instead of all-day",
         "DTSTART;VALUE=DATE:20240101\nRRULE:FREQ=DAILY;COUNT=2\n",
         {"RECURRENCE-ID;VALUE=DATE:20240102\n" + noon},
         {"20240101T000000/20240102T000000 m", "20240102T120000/20240102T130000 o"}},
        {"an all-day one named by a time",
         "DTSTART;VALUE=DATE:20240101\nRRULE:FREQ=DAILY;COUNT=2\n",
         {"RECURRENCE-ID:20240102T000000Z\n" + noon},
         {"20240101T000000/20240102T000000 m", "20240102T120000/20240102T130000 o"}},
        {"the later revision counts",
         dailyInBerlin,
         {"RECURRENCE-ID:20240102T080000Z\nSEQUENCE:2\n" + noon,
          "RECURRENCE-ID:20240102T080000Z\nSEQUENCE:1\nDTSTART:20240102T150000\n"},
         moved},
        {"of two alike the last counts",
         dailyInBerlin,
         {"RECURRENCE-ID:20240102T080000Z\nDTSTART:20240102T150000\n", "RECURRENCE-ID:20240102T080000Z\n" + noon},
         moved},
        {"of an RDATE",
         "DTSTART;TZID=Europe/Berlin:20240101T090000\nDURATION:PT1H\nRDATE:20240102T080000Z\n",
         {"RECURRENCE-ID:20240102T080000Z\n" + noon},
         {dayOne, "20240102T120000/20240102T130000 o"}},
    });
}

TEST(OccurrencesOverride, StandsAloneWithoutItsMaster) {
    expectOverridden({{"two of somebody else's",
                       "",
                       {"RECURRENCE-ID:20240102T080000Z\nDTSTART:20240102T090000\n",
                        "RECURRENCE-ID:20240109T080000Z\nDTSTART:20240109T090000\n"},
                       {"20240102T090000/20240102T090000 o", "20240109T090000/20240109T090000 o"}}});
}

TEST(OccurrencesOverride, MayStandBeforeItsMaster) {
    CalendarText text(calendar(event("UID:u\nSUMMARY:o\nRECURRENCE-ID:20240102T080000Z\nDTSTART:20240102T120000\n")
                               + event("UID:u\nSUMMARY:m\n" + dailyInBerlin)),
                      "Europe/Berlin");
    EXPECT_THAT(text.occurrences("20240101", "20240201", "Europe/Berlin"),
                ElementsAreArray(Spans{dayOne, "20240102T120000/20240102T120000 o", dayThree}));
}

TEST(OccurrencesOverride, OfThisAndFutureMovesTheOccurrencesBehindIt) {
    const std::string weekly = "DTSTART;TZID=Europe/Berlin:20240101T090000\nDURATION:PT1H\nRRULE:FREQ=WEEKLY;COUNT=4\n";
    const std::string fromTheSecond = "RECURRENCE-ID;RANGE=THISANDFUTURE;TZID=Europe/Berlin:20240108T090000\n";
    const std::string first = "20240101T090000/20240101T100000 m";
    expectOverridden({
        {"by hours, with a new length",
         weekly,
         {fromTheSecond + "DTSTART;TZID=Europe/Berlin:20240108T140000\nDURATION:PT2H\n"},
         {first, "20240108T140000/20240108T160000 o", "20240115T140000/20240115T160000 o",
          "20240122T140000/20240122T160000 o"}},
        {"by a day",
         weekly,
         {fromTheSecond + "DTSTART;TZID=Europe/Berlin:20240109T090000\nDURATION:PT1H\n"},
         {first, "20240109T090000/20240109T100000 o", "20240116T090000/20240116T100000 o",
          "20240123T090000/20240123T100000 o"}},
        {"named in UTC",
         weekly,
         {"RECURRENCE-ID;RANGE=THISANDFUTURE:20240108T080000Z\nDTSTART;TZID=Europe/Berlin:20240108T140000\n"},
         {first, "20240108T140000/20240108T140000 o", "20240115T140000/20240115T140000 o",
          "20240122T140000/20240122T140000 o"}},
        {"beside an override of one behind it",
         weekly,
         {fromTheSecond + "DTSTART;TZID=Europe/Berlin:20240108T140000\n",
          "RECURRENCE-ID;TZID=Europe/Berlin:20240115T090000\nDTSTART:20240115T200000\n"},
         {first, "20240108T140000/20240108T140000 o", "20240115T200000/20240115T200000 o",
          "20240122T140000/20240122T140000 o"}},
        {"twice, each up to the next",
         weekly,
         {fromTheSecond + "DTSTART;TZID=Europe/Berlin:20240108T140000\n",
          "RECURRENCE-ID;RANGE=THISANDFUTURE;TZID=Europe/Berlin:20240122T090000\nDTSTART:20240122T200000\n"},
         {first, "20240108T140000/20240108T140000 o", "20240115T140000/20240115T140000 o",
          "20240122T200000/20240122T200000 o"}},
        {"by a thousand years",
         "DTSTART;TZID=Europe/Berlin:10240101T090000\nRRULE:FREQ=DAILY\n",
         {"RECURRENCE-ID;RANGE=THISANDFUTURE;TZID=Europe/Berlin:10240101T090000\n"
          "DTSTART;VALUE=DATE:20240131\n"},
         {"20240131T000000/20240201T000000 o"}},
        {"from out of the window into it",
         "DTSTART;TZID=Europe/Berlin:20231204T090000\nDURATION:PT1H\nRRULE:FREQ=WEEKLY;COUNT=3\n",
         {"RECURRENCE-ID;RANGE=THISANDFUTURE;TZID=Europe/Berlin:20231211T090000\n"
          "DTSTART;TZID=Europe/Berlin:20240110T090000\n"},
         {"20240110T090000/20240110T090000 o", "20240117T090000/20240117T090000 o"}},
    });
}

TEST(OccurrencesOverride, ThatIsCancelledIsListedWithItsStatus) {
    CalendarText text(calendar(event("UID:u\n" + dailyInBerlin)
                               + event("UID:u\nSTATUS:CANCELLED\nRECURRENCE-ID:20240102T080000Z\n"
                                       "DTSTART;TZID=Europe/Berlin:20240102T090000\n")));
    const auto components = text.components();
    vdir::CalendarFile file{"", {}};
    const auto found =
        vdir::occurrencesOf(components, Instant{wall("20240102").time_since_epoch()},
                            Instant{wall("20240103").time_since_epoch()}, zoneFinder(file, text.zones()));
    ASSERT_EQ(found.occurrences.size(), 1U);
    EXPECT_EQ(found.occurrences[0].component->status, 3);
    EXPECT_TRUE(found.occurrences[0].hasRecurrenceRules) << "its master has them";
}

TEST(OccurrencesItems, ListEveryMasterOfOneUidAndEveryEventWithoutUid) {
    CalendarText masters(calendar(event("UID:u\nSUMMARY:a\nDTSTART:20240102T090000\n")
                                  + event("UID:u\nSUMMARY:b\nDTSTART:20240103T090000\n")));
    EXPECT_EQ(masters.scanned().items.size(), 1U);
    EXPECT_THAT(masters.occurrences("20240101", "20240201"),
                ElementsAreArray(Spans{"20240102T090000/20240102T090000 a", "20240103T090000/20240103T090000 b"}));
    CalendarText without(
        calendar(event("SUMMARY:a\nDTSTART:20240102T090000\n") + event("SUMMARY:b\nDTSTART:20240102T090000\n")));
    EXPECT_EQ(without.scanned().items.size(), 2U);
    EXPECT_EQ(without.occurrences("20240101", "20240201").size(), 2U);
}

// ---- The first occurrence ---------------------------------------------------------------------------------------

TEST(FirstOccurrence, IsTheStartUnlessItIsReplacedExcludedOrPreceded) {
    const std::string daily = "UID:u\nDTSTART:20240101T090000\nRRULE:FREQ=DAILY\n";
    const struct {
        std::string name, components, expected;
    } cases[] = {
        {"the start", event(daily), "20240101T090000/20240101T090000"},
        {"the start excluded", event(daily + "EXDATE:20240101T090000,20240102T090000\n"),
         "20240103T090000/20240103T090000"},
        {"a start that the rule leaves out", event("DTSTART:20240103T090000\nRRULE:FREQ=WEEKLY;BYDAY=MO\n"),
         "20240103T090000/20240103T090000"},
        {"an RDATE before the start", event(daily + "RDATE:20231201T090000\n"), "20231201T090000/20231201T090000"},
        {"moved before the start",
         event(daily) + event("UID:u\nRECURRENCE-ID:20240105T090000\nDTSTART:20231201T090000\n"),
         "20231201T090000/20231201T090000"},
        {"everything excluded", event(daily + "EXRULE:FREQ=DAILY\n"), "none"},
        {"excluded, and the next is far", event("DTSTART:20240229\nRRULE:FREQ=YEARLY;INTERVAL=100\nEXDATE:20240229\n"),
         "21240229T000000/21240301T000000"},
        {"in the year 1", event("DTSTART:00010101T000000Z\n"), "00010101T000000/00010101T000000"},
        {"in the year 9999", event("DTSTART:99991231T000000Z\n"), "99991231T000000/99991231T000000"},
    };
    for (const auto& given : cases) {
        SCOPED_TRACE(given.name);
        CalendarText text(calendar(given.components));
        EXPECT_EQ(text.first(), given.expected);
    }
}

} // namespace
} // namespace vesk::test
