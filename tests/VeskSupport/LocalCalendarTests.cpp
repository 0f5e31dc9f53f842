#include "VeskSupport/LocalCalendar.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tuple>

namespace vesk {
namespace {

using namespace std::chrono;

Instant utc(year_month_day date, seconds time = 0s) { return sys_days{date} + time; }

TEST(LocalCalendar, WritesTheLocalIsoForm) {
    EXPECT_EQ(LocalCalendar("Europe/Berlin").isoText(utc(2026y / 4 / 26, 12h)), "2026-04-26T14:00:00+02:00");
    EXPECT_EQ(LocalCalendar("UTC").isoText(utc(2026y / 4 / 26, 12h)), "2026-04-26T12:00:00Z");
    EXPECT_EQ(LocalCalendar("Europe/London").isoText(utc(2026y / 1 / 5, 12h)), "2026-01-05T12:00:00Z");
    EXPECT_EQ(LocalCalendar("Asia/Kolkata").isoText(utc(2026y / 4 / 26, 12h)), "2026-04-26T17:30:00+05:30");
}

TEST(LocalCalendar, AnUnknownZoneIsUtc) { EXPECT_EQ(LocalCalendar("Mars/Olympus").offset(utc(2026y / 7 / 1)), 0s); }

TEST(LocalCalendar, DaysFollowTheWallAndNotTheClock) {
    const LocalCalendar berlin("Europe/Berlin");
    const Instant spring = berlin.startOfDay(utc(2026y / 3 / 29, 12h));
    EXPECT_EQ(berlin.addDays(spring, 1) - spring, 23h);
    const Instant autumn = berlin.startOfDay(utc(2026y / 10 / 25, 12h));
    EXPECT_EQ(berlin.addDays(autumn, 1) - autumn, 25h);
    EXPECT_EQ(berlin.isoText(berlin.addDays(utc(2026y / 3 / 28, 9h), 1)), "2026-03-29T10:00:00+02:00");
}

TEST(LocalCalendar, TellsSkippedAndRepeatedWallTimes) {
    const LocalCalendar berlin("Europe/Berlin");
    const auto skipped = berlin.meaning(WallDay{2026y / 3 / 29} + 2h + 30min);
    EXPECT_EQ(skipped.kind, WallTimeKind::skipped);
    EXPECT_EQ(skipped.earlier, utc(2026y / 3 / 29, 30min));
    EXPECT_EQ(skipped.later, utc(2026y / 3 / 29, 90min));
    const auto repeated = berlin.meaning(WallDay{2026y / 10 / 25} + 2h + 30min);
    EXPECT_EQ(repeated.kind, WallTimeKind::repeated);
    EXPECT_EQ(repeated.earlier, utc(2026y / 10 / 25, 30min));
    EXPECT_EQ(repeated.later, utc(2026y / 10 / 25, 90min));
    EXPECT_EQ(berlin.meaning(WallDay{2026y / 10 / 25} + 3h).kind, WallTimeKind::unique);
    EXPECT_EQ(berlin.instant(WallDay{2026y / 3 / 29} + 2h + 30min), utc(2026y / 3 / 29, 90min));
    EXPECT_EQ(berlin.instant(WallDay{2026y / 10 / 25} + 2h + 30min), utc(2026y / 10 / 25, 30min));
}

TEST(LocalCalendar, ADayWithoutMidnightStartsAtItsFirstInstant) {
    const LocalCalendar cairo("Africa/Cairo"); // 2014-05-16: 00:00 becomes 01:00
    const Instant start = cairo.startOfDay(WallDay{2014y / 5 / 16});
    EXPECT_EQ(cairo.isoText(start), "2014-05-16T01:00:00+03:00");
    EXPECT_EQ(cairo.startOfDay(start + 5h), start);
    EXPECT_EQ(cairo.isoText(cairo.addDays(start, 1)), "2014-05-17T00:00:00+03:00");
}

TEST(LocalCalendar, ADayWithTwoMidnightsStartsAtTheFirst) {
    const LocalCalendar havana("America/Havana"); // 2025-11-02: 01:00 becomes 00:00
    EXPECT_EQ(havana.isoText(havana.startOfDay(WallDay{2025y / 11 / 2})), "2025-11-02T00:00:00-04:00");
    EXPECT_EQ(havana.addDays(havana.startOfDay(WallDay{2025y / 11 / 2}), 1)
                  - havana.startOfDay(WallDay{2025y / 11 / 2}),
              25h);
}

TEST(LocalCalendar, KeepsMillisecondsWhenDaysAreAdded) {
    const LocalCalendar berlin("Europe/Berlin");
    EXPECT_EQ(berlin.addDays(utc(2026y / 4 / 26, 12h) + 250ms, 1), utc(2026y / 4 / 27, 12h) + 250ms);
}

TEST(LocalCalendar, CarriesTheEndsOfTheRange) {
    const LocalCalendar berlin("Europe/Berlin");
    EXPECT_EQ(berlin.isoText(berlin.startOfDay(WallDay{1y / 1 / 1})), "0001-01-01T00:00:00+00:53:28");
    const Instant last = berlin.startOfDay(WallDay{9999y / 12 / 31});
    EXPECT_EQ(berlin.isoText(last), "9999-12-31T00:00:00+01:00");
    EXPECT_EQ(berlin.isoText(berlin.addDays(last, 1)), "10000-01-01T00:00:00+01:00");
}

TEST(Zones, AreKnownByOlsonAndWindowsNames) {
    EXPECT_TRUE(LocalCalendar::isKnownZone("Europe/Berlin"));
    EXPECT_FALSE(LocalCalendar::isKnownZone("Berlin"));
    EXPECT_FALSE(LocalCalendar::isKnownZone(""));
    EXPECT_EQ(LocalCalendar::zoneForWindowsName("W. Europe Standard Time"), "Europe/Berlin");
    EXPECT_EQ(LocalCalendar::zoneForWindowsName("Nowhere Standard Time"), std::nullopt);
}

TEST(Zones, AreReadFromVTimeZoneComponents) {
    const auto zone =
        LocalCalendar::fromVTimeZone("BEGIN:VTIMEZONE\r\nTZID:Custom\r\nBEGIN:STANDARD\r\n"
                                     "DTSTART:19701025T030000\r\nRRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU\r\n"
                                     "TZOFFSETFROM:+0200\r\nTZOFFSETTO:+0100\r\nEND:STANDARD\r\n"
                                     "BEGIN:DAYLIGHT\r\nDTSTART:19700329T020000\r\n"
                                     "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU\r\nTZOFFSETFROM:+0100\r\n"
                                     "TZOFFSETTO:+0200\r\nEND:DAYLIGHT\r\nEND:VTIMEZONE\r\n");
    ASSERT_TRUE(zone.has_value());
    EXPECT_EQ(zone->offset(utc(2026y / 7 / 1)), 2h);
    EXPECT_EQ(zone->offset(utc(2026y / 1 / 1)), 1h);
    EXPECT_FALSE(LocalCalendar::fromVTimeZone("BEGIN:VTIMEZONE\r\nEND:VTIMEZONE\r\n").has_value());
}

TEST(Zones, AreWrittenWithSecondsInTheirOffsetsOnlyWhereThereAreSome) {
    const std::tuple<const char*, Instant, const char*> cases[] = {
        {"Europe/Berlin", utc(2026y / 7 / 1), "\r\nTZOFFSETTO:+0200\r\nTZOFFSETFROM:+0100\r\n"},
        {"Asia/Kathmandu", utc(2026y / 7 / 1), "\r\nTZOFFSETTO:+0545\r\nTZOFFSETFROM:+0545\r\n"},
        {"Africa/Monrovia", utc(1970y / 7 / 1), "\r\nTZOFFSETTO:-004430\r\n"},
    };
    for (const auto& [name, instant, expected] : cases) {
        const LocalCalendar zone(name);
        const std::string text = zone.vTimeZoneText(instant);
        EXPECT_THAT(text, testing::HasSubstr(expected)) << name;
        const auto read = LocalCalendar::fromVTimeZone(text);
        ASSERT_TRUE(read.has_value()) << text;
        EXPECT_EQ(read->offset(instant), zone.offset(instant)) << name;
    }
}

} // namespace
} // namespace vesk
