#include "VeskShellCore/CalendarDates.hpp"

#include "VeskShellCore/CalendarError.hpp"

#include <gtest/gtest.h>

namespace vesk::VeskCalendarOperations {
namespace {

using namespace std::chrono;

Instant utc(year_month_day date, milliseconds time = 0ms) { return Instant{sys_days{date}} + time; }

/// The message of the CalendarError with code 400 that `call` throws.
template <class Call> std::string refusal(Call call) {
    try {
        call();
    } catch (const CalendarError& error) {
        EXPECT_EQ(error.code(), 400);
        EXPECT_EQ(error.domain(), "VeskCalendarOperations");
        return error.description();
    }
    return "accepted";
}

class CalendarDates : public ::testing::Test {
protected:
    LocalCalendar berlin{"Europe/Berlin"};
    const Instant noon = utc(2026y / 4 / 26, 10h);
    const Instant midnight = utc(2026y / 4 / 25, 22h);
};

TEST_F(CalendarDates, ADateIsItsLocalMidnight) {
    EXPECT_EQ(parseCalendarDate("2026-04-26", berlin), midnight);
    EXPECT_EQ(parseCalendarDate(" \u20032026-04-26\n", berlin), midnight);
    EXPECT_EQ(parseCalendarDate("2026-04-26", LocalCalendar("Pacific/Kiritimati")), utc(2026y / 4 / 25, 10h));
    EXPECT_EQ(parseCalendarDate("2024-02-29", LocalCalendar("UTC")), utc(2024y / 2 / 29));
    EXPECT_EQ(parseCalendarDate("0001-01-01", LocalCalendar("UTC")), utc(1y / 1 / 1));
    EXPECT_EQ(parseCalendarDate("9999-12-31", LocalCalendar("UTC")), utc(9999y / 12 / 31));
}

TEST_F(CalendarDates, ADateWithoutMidnightIsTheStartOfItsDay) {
    const LocalCalendar cairo("Africa/Cairo"); // 2014-05-16: 00:00 becomes 01:00
    EXPECT_EQ(cairo.isoText(parseCalendarDate("2014-05-16", cairo)), "2014-05-16T01:00:00+03:00");
}

TEST_F(CalendarDates, ADateWithTwoMidnightsIsTheStartOfItsDay) {
    const LocalCalendar havana("America/Havana"); // 2025-11-02: 01:00 becomes 00:00
    EXPECT_EQ(havana.isoText(parseCalendarDate("2025-11-02", havana)), "2025-11-02T00:00:00-04:00");
}

TEST_F(CalendarDates, OtherDatesAreRefusedWithTheTextAsItCame) {
    for (const std::string text : {"",
                                   "  ",
                                   "tomorrow",
                                   "2026-4-26",
                                   "2026-02-30",
                                   "2025-02-29",
                                   "2026-13-01",
                                   "2026-00-10",
                                   "2026-04-00",
                                   "0000-01-01",
                                   "26-04-26",
                                   "20260426",
                                   "2026/04/26",
                                   "2026-04-26T00:00",
                                   "2026-04-26 x",
                                   "+2026-04-26",
                                   "-2026-04-26",
                                   "12026-04-26",
                                   "2026 -04-26",
                                   " 2026-04-31 ",
                                   "\u0662\u0660\u0662\u0666-\u0660\u0664-\u0662\u0666"})
        EXPECT_EQ(refusal([&] { parseCalendarDate(text, berlin); }),
                  "Invalid date: " + text + ". Expected YYYY-MM-DD.");
}

TEST_F(CalendarDates, ATimeHasOneOfSixForms) {
    const std::pair<const char*, Instant> cases[] = {
        {"2026-04-26 14:00", utc(2026y / 4 / 26, 12h)},
        {"2026-04-26T14:00", utc(2026y / 4 / 26, 12h)},
        {"2026-04-26 14:00:05", utc(2026y / 4 / 26, 12h + 5s)},
        {"2026-04-26T14:00:00", utc(2026y / 4 / 26, 12h)},
        {"2026-04-26T14:00:00.250Z", utc(2026y / 4 / 26, 14h + 250ms)},
        {"2026-04-26T14:00:00.5-07:00", utc(2026y / 4 / 26, 21h + 500ms)},
        {"2026-04-26T14:00:00+02:00", utc(2026y / 4 / 26, 12h)},
        {"2026-04-26T14:00:00Z", utc(2026y / 4 / 26, 14h)},
        {" 2026-01-05 00:00\t", utc(2026y / 1 / 4, 23h)},
        {"2026-04-26 23:59:59", utc(2026y / 4 / 26, 21h + 59min + 59s)},
    };
    for (const auto& [text, instant] : cases) EXPECT_EQ(parseDateTime(text, berlin), instant) << text;
}

TEST_F(CalendarDates, TimesWithoutAnOffsetAreLocal) {
    EXPECT_EQ(parseDateTime("2026-04-26 14:00", LocalCalendar("Asia/Kolkata")), utc(2026y / 4 / 26, 8h + 30min));
    EXPECT_EQ(parseDateTime("2026-04-26 14:00", LocalCalendar("America/New_York")), utc(2026y / 4 / 26, 18h));
    EXPECT_EQ(parseDateTime("2026-04-26T14:00:00+02:00", LocalCalendar("Asia/Kolkata")), utc(2026y / 4 / 26, 12h));
}

TEST_F(CalendarDates, OtherTimesAreRefusedWithTheTextAsItCame) {
    for (const std::string text :
         {"now", "2026-04-26", "2026-04-26 24:00", "2026-04-26 14:60", "2026-04-26 14:00:60", "2026-04-26 9:05",
          "2026-04-26  14:00", "2026-04-26t14:00", "2026-02-30 14:00", "2026-04-26 14", "2026-04-26T14:00Z",
          "2026-04-26T14:00+02:00", "2026-04-26T14:00:00+0200", "2026-04-26 14:00:00Z", "2026-04-26T14:00:00.Z",
          "2026-04-26T14:00:00.250", "2026-04-26T14:00:00 +02:00", " 2026-04-26 14:00 h", "26-04-26 14:00"})
        EXPECT_EQ(refusal([&] { parseDateTime(text, berlin); }),
                  "Invalid date/time: " + text + ". Use YYYY-MM-DD HH:MM, YYYY-MM-DDTHH:MM, or full ISO 8601.");
}

TEST_F(CalendarDates, ABlankTimeIsAMissingStart) {
    for (const std::string text : {"", " ", "\n\t\u00a0"})
        EXPECT_EQ(refusal([&] { parseDateTime(text, berlin); }), "Event start time is required.");
}

TEST_F(CalendarDates, ASkippedTimeIsRefusedInEachLocalForm) {
    for (const std::string text :
         {"2026-03-29 02:30", "2026-03-29T02:00", "2026-03-29 02:59:59", "2026-03-29T02:30:00"})
        EXPECT_TRUE(refusal([&] { parseDateTime(text, berlin); }).starts_with("Invalid date/time: " + text)) << text;
    EXPECT_EQ(parseDateTime("2026-03-29 01:59:59", berlin), utc(2026y / 3 / 29, 59min + 59s));
    EXPECT_EQ(parseDateTime("2026-03-29 03:00", berlin), utc(2026y / 3 / 29, 1h));
    EXPECT_EQ(parseDateTime("2026-03-29T02:30:00+01:00", berlin), utc(2026y / 3 / 29, 90min));
}

TEST_F(CalendarDates, ARepeatedTimeIsTheLater) {
    EXPECT_EQ(parseDateTime("2026-10-25 02:30", berlin), utc(2026y / 10 / 25, 90min));
    EXPECT_EQ(parseDateTime("2026-10-25T02:00:00", berlin), utc(2026y / 10 / 25, 1h));
    EXPECT_EQ(parseDateTime("2026-10-25 01:59", berlin), utc(2026y / 10 / 24, 23h + 59min));
}

TEST_F(CalendarDates, AnAllDayBoundaryIsAStartOfDay) {
    EXPECT_EQ(parseAllDayDateBoundary(" 2026-04-26 ", berlin), midnight);
    EXPECT_EQ(parseAllDayDateBoundary("2026-04-26 14:00", berlin), midnight);
    EXPECT_EQ(parseAllDayDateBoundary("2026-04-26T23:00:00Z", berlin), midnight + 24h); // already the 27th there
    EXPECT_EQ(parseAllDayDateBoundary("2026-04-26T14:00:00.250+02:00", berlin), midnight);
}

TEST_F(CalendarDates, ABadAllDayBoundaryReportsAsItsForm) {
    EXPECT_EQ(refusal([&] { parseAllDayDateBoundary("2026-02-30", berlin); }),
              "Invalid date: 2026-02-30. Expected YYYY-MM-DD.");
    const std::string arabic = "\u0662\u0660\u0662\u0666-\u0660\u0664-\u0662\u0666";
    EXPECT_EQ(refusal([&] { parseAllDayDateBoundary(arabic, berlin); }),
              "Invalid date: " + arabic + ". Expected YYYY-MM-DD.");
    EXPECT_EQ(refusal([&] { parseAllDayDateBoundary("2026-2-3", berlin); }),
              "Invalid date/time: 2026-2-3. Use YYYY-MM-DD HH:MM, YYYY-MM-DDTHH:MM, or full ISO 8601.");
    EXPECT_EQ(refusal([&] { parseAllDayDateBoundary(" ", berlin); }), "Event start time is required.");
}

TEST_F(CalendarDates, AnEventWithoutAnEndLastsAnHour) {
    EXPECT_EQ(resolveEndDate(noon, std::nullopt, berlin), noon + 1h);
    EXPECT_EQ(resolveEndDate(noon, " \n", berlin), noon + 1h);
    const Instant beforeGap = utc(2026y / 3 / 29, 30min);
    EXPECT_EQ(berlin.isoText(resolveEndDate(beforeGap, std::nullopt, berlin)), "2026-03-29T03:30:00+02:00");
}

TEST_F(CalendarDates, AnEndMustBeLaterThanTheStart) {
    EXPECT_EQ(resolveEndDate(noon, " 2026-04-26 12:01 ", berlin), noon + 1min);
    const std::string message = "Event end time must be after the start time.";
    EXPECT_EQ(refusal([&] { resolveEndDate(noon, "2026-04-26 12:00", berlin); }), message);
    EXPECT_EQ(refusal([&] { resolveEndDate(noon, "2026-04-26 11:59", berlin); }), message);
    EXPECT_EQ(refusal([&] { resolveEndDate(noon, "2026-04-27", berlin); }),
              "Invalid date/time: 2026-04-27. Use YYYY-MM-DD HH:MM, YYYY-MM-DDTHH:MM, or full ISO 8601.");
}

TEST_F(CalendarDates, AnAllDayEventWithoutAnEndLastsItsDay) {
    EXPECT_EQ(resolveAllDayEndDate(midnight, std::nullopt, berlin), midnight + 24h);
    EXPECT_EQ(resolveAllDayEndDate(midnight, "  ", berlin), midnight + 24h);
    const Instant spring = parseCalendarDate("2026-03-29", berlin);
    EXPECT_EQ(resolveAllDayEndDate(spring, std::nullopt, berlin) - spring, 23h);
}

TEST_F(CalendarDates, AnAllDayEndIsExclusiveOrTheStartsOwnDate) {
    EXPECT_EQ(resolveAllDayEndDate(midnight, "2026-04-28", berlin), midnight + 48h);
    EXPECT_EQ(resolveAllDayEndDate(midnight, "2026-04-28 09:00", berlin), midnight + 48h);
    EXPECT_EQ(resolveAllDayEndDate(midnight, "2026-04-26", berlin), midnight + 24h);
    EXPECT_EQ(resolveAllDayEndDate(midnight, "2026-04-26 23:59", berlin), midnight + 24h);
    EXPECT_EQ(refusal([&] { resolveAllDayEndDate(midnight, "2026-04-25", berlin); }),
              "All-day event end date must be after the start date.");
    EXPECT_EQ(refusal([&] { resolveAllDayEndDate(midnight, "2026-04-31", berlin); }),
              "Invalid date: 2026-04-31. Expected YYYY-MM-DD.");
}

TEST_F(CalendarDates, TheEndsOfTheRangeAreCarried) {
    const Instant last = parseDateTime("9999-12-31 23:30", LocalCalendar("UTC"));
    EXPECT_EQ(LocalCalendar("UTC").isoText(resolveEndDate(last, std::nullopt, LocalCalendar("UTC"))),
              "10000-01-01T00:30:00Z");
}

} // namespace
} // namespace vesk::VeskCalendarOperations
