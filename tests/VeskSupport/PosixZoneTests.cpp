#include "VeskSupport/PosixZone.hpp"

#include "VeskSupport/Iso8601.hpp"
#include "VeskSupport/LocalCalendar.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

TEST(PosixZoneTests, IdentifiersOfZones) {
    const struct {
        const char* text;
        std::optional<std::string> zone;
    } cases[] = {
        {"UTC0", "UTC"},
        {"GMT-1", "GMT+01:00"},
        {"EST5", "GMT-05:00"},
        {"EST+5", "GMT-05:00"},
        {"<+0545>-5:45", "GMT+05:45"},
        {"LMT-0:53:28", "GMT+00:53:28"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", "CET-1CEST,M3.5.0,M10.5.0/3"},
        {"EST5EDT4,M3.2.0/2:00:00,M11.1.0", "EST5EDT4,M3.2.0/2:00:00,M11.1.0"},
        {"", std::nullopt},
        {"CET", std::nullopt},
        {"CE-1", std::nullopt},
        {"CET-1CE", std::nullopt},
        {"CET-25", std::nullopt},
        {"CET-1:60", std::nullopt},
        {"CET-1x", std::nullopt},
        {"CET-1CEST,M3.5.0", std::nullopt},
        {"CET-1CEST,M13.5.0,M10.5.0", std::nullopt},
        {"CET-1CEST,M3.6.0,M10.5.0", std::nullopt},
        {"CET-1CEST,M3.5.7,M10.5.0", std::nullopt},
        {"CET-1CEST,J0,J300", std::nullopt},
        {"CET-1CEST,J366,J300", std::nullopt},
        {"CET-1CEST,M3.5.0,M10.5.0/168", std::nullopt},
        {"CET-1CEST,M3.5.0,M10.5.0 ", std::nullopt},
        {"<+1>-1", std::nullopt},
        {"<+01-1", std::nullopt},
        {"<+0 1>-1", std::nullopt},
        {"Europe/Berlin", std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(zoneForPosixText(c.text), c.zone) << c.text;
}

Instant utc(const char* text) { return *parseInternetDateTime(text, FractionalSeconds::refused); }

TEST(PosixZoneTests, CalendarsFollowTheRules) {
    const struct {
        const char* zone;
        const char* utc;
        const char* local;
    } cases[] = {
        {"CET-1CEST,M3.5.0,M10.5.0/3", "2026-03-29T00:59:59Z", "2026-03-29T01:59:59+01:00"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", "2026-03-29T01:00:00Z", "2026-03-29T03:00:00+02:00"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", "2026-10-25T00:59:59Z", "2026-10-25T02:59:59+02:00"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", "2026-10-25T01:00:00Z", "2026-10-25T02:00:00+01:00"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", "1965-07-01T00:00:00Z", "1965-07-01T02:00:00+02:00"},
        {"XST5XDT", "2026-03-08T07:00:00Z", "2026-03-08T03:00:00-04:00"},
        {"XST5XDT", "2026-11-01T06:00:00Z", "2026-11-01T01:00:00-05:00"},
        {"AEST-10AEDT,M10.1.0,M4.1.0/3", "2026-01-01T00:00:00Z", "2026-01-01T11:00:00+11:00"},
        {"AEST-10AEDT,M10.1.0,M4.1.0/3", "2026-07-01T00:00:00Z", "2026-07-01T10:00:00+10:00"},
        {"IST-2IDT,M3.4.4/26,M10.5.0", "2026-03-27T00:00:00Z", "2026-03-27T03:00:00+03:00"},
        {"IST-2IDT,M3.4.4/26,M10.5.0", "2026-03-26T23:59:59Z", "2026-03-27T01:59:59+02:00"},
        {"<-02>2<-01>,M3.5.0/-1,M10.5.0/0", "2026-03-29T00:59:59Z", "2026-03-28T22:59:59-02:00"},
        {"<-02>2<-01>,M3.5.0/-1,M10.5.0/0", "2026-03-29T01:00:00Z", "2026-03-29T00:00:00-01:00"},
        {"AAA0BBB,J60/0,J300/0", "2024-03-01T00:00:00Z", "2024-03-01T01:00:00+01:00"},
        {"AAA0BBB,J60/0,J300/0", "2024-02-29T23:59:59Z", "2024-02-29T23:59:59Z"},
        {"AAA0BBB,59/0,300/0", "2024-02-29T00:00:00Z", "2024-02-29T01:00:00+01:00"},
        {"AAA0BBB,59/0,300/0", "2026-03-01T00:00:00Z", "2026-03-01T01:00:00+01:00"},
        {"AAA0BBB,59/0,300/0", "2026-02-28T23:59:59Z", "2026-02-28T23:59:59Z"},
        {"LMT-0:53:28", "2026-01-01T00:00:00Z", "2026-01-01T00:53:28+00:53:28"},
        {"nonsense", "2026-07-01T00:00:00Z", "2026-07-01T00:00:00Z"},
    };
    for (const auto& c : cases) {
        const std::string zone = zoneForPosixText(c.zone).value_or(c.zone);
        EXPECT_EQ(LocalCalendar(zone).isoText(utc(c.utc)), c.local) << c.zone << " at " << c.utc;
    }
}

TEST(PosixZoneTests, GapsAndRepeatedTimesAreTold) {
    const LocalCalendar calendar("CET-1CEST,M3.5.0,M10.5.0/3");
    using namespace std::chrono;
    const WallTime gap = local_days{year{2026} / 3 / 29} + hours(2) + minutes(30);
    const WallTime twice = local_days{year{2026} / 10 / 25} + hours(2) + minutes(30);
    EXPECT_EQ(calendar.meaning(gap).kind, WallTimeKind::skipped);
    EXPECT_EQ(calendar.meaning(twice).kind, WallTimeKind::repeated);
}

} // namespace
} // namespace vesk
