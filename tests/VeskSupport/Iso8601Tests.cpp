#include "VeskSupport/Iso8601.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

using namespace std::chrono;

TEST(WallDay, AcceptsExactlyTheDigitsOfItsPattern) {
    EXPECT_EQ(parseWallDay("2026-04-26"), WallDay{2026y / 4 / 26});
    EXPECT_EQ(parseWallDay("0001-01-01"), WallDay{1y / 1 / 1});
    EXPECT_EQ(parseWallDay("9999-12-31"), WallDay{9999y / 12 / 31});
    EXPECT_EQ(parseWallDay("2024-02-29"), WallDay{2024y / 2 / 29});
    for (const char* text : {"", "2026-4-26", "26-04-26", "2026-02-30", "2026-13-01", "2026-00-10", "0000-01-01",
                             "2026-04-26 ", " 2026-04-26", "2026-04-26x", "2026 -04-26", "+026-04-26", "2025-02-29",
                             "\u0662\u0660\u0662\u0666-04-26", "2026-04-2"})
        EXPECT_EQ(parseWallDay(text), std::nullopt) << text;
}

TEST(WallTime, AcceptsExactlyTheDigitsOfItsPattern) {
    const WallTime expected = WallDay{2026y / 4 / 26} + 14h + 5min;
    EXPECT_EQ(parseWallTime("2026-04-26 14:05", ' ', false), expected);
    EXPECT_EQ(parseWallTime("2026-04-26T14:05:09", 'T', true), expected + 9s);
    for (const char* text : {"2026-04-26", "2026-04-26T14:05", "2026-04-26 14:5", "2026-04-26 24:00",
                             "2026-04-26 14:60", "2026-04-26 14:05:00", "2026-04-26  14:05", "2026-04-26 14:05 "})
        EXPECT_EQ(parseWallTime(text, ' ', false), std::nullopt) << text;
    EXPECT_EQ(parseWallTime("2026-04-26 14:05:60", ' ', true), std::nullopt);
}

TEST(InternetDateTime, NeedsAnOffset) {
    const Instant expected{sys_days{2026y / 4 / 26} + 12h};
    const auto refused = FractionalSeconds::refused, required = FractionalSeconds::required;
    EXPECT_EQ(parseInternetDateTime("2026-04-26T14:00:00+02:00", refused), expected);
    EXPECT_EQ(parseInternetDateTime("2026-04-26T12:00:00Z", refused), expected);
    EXPECT_EQ(parseInternetDateTime("2026-04-26T06:30:00-05:30", refused), expected);
    EXPECT_EQ(parseInternetDateTime("2026-04-26T12:00:00.250Z", required), expected + 250ms);
    EXPECT_EQ(parseInternetDateTime("2026-04-26T12:00:00.5Z", required), expected + 500ms);
    EXPECT_EQ(parseInternetDateTime("2026-04-26T12:00:00.1239999Z", required), expected + 123ms);
    for (const char* text :
         {"2026-04-26T12:00:00", "2026-04-26T12:00:00.250Z", "2026-04-26T12:00Z", "2026-04-26 12:00:00Z",
          "2026-04-26T12:00:00+0200", "2026-04-26T12:00:00+2:00", "2026-04-26T12:00:00z", ""})
        EXPECT_EQ(parseInternetDateTime(text, refused), std::nullopt) << text;
    EXPECT_EQ(parseInternetDateTime("2026-04-26T12:00:00Z", required), std::nullopt);
    EXPECT_EQ(parseInternetDateTime("2026-04-26T12:00:00.Z", required), std::nullopt);
}

TEST(InternetDateTime, AnOffsetDoesNotLeadOutOfTheYearsThatCanBeWritten) {
    const auto refused = FractionalSeconds::refused;
    EXPECT_TRUE(parseInternetDateTime("0001-01-01T01:00:00+01:00", refused));
    EXPECT_TRUE(parseInternetDateTime("9999-12-31T22:59:59-01:00", refused));
    EXPECT_EQ(parseInternetDateTime("0001-01-01T00:59:59+01:00", refused), std::nullopt);
    EXPECT_EQ(parseInternetDateTime("9999-12-31T23:00:00-01:00", refused), std::nullopt);
}

TEST(InternetDateTime, IsWrittenWithItsOffset) {
    const Instant instant{sys_days{2026y / 4 / 26} + 12h + 999ms};
    EXPECT_EQ(formatInternetDateTime(instant, 2h), "2026-04-26T14:00:00+02:00");
    EXPECT_EQ(formatInternetDateTime(instant, -(3h + 30min)), "2026-04-26T08:30:00-03:30");
    EXPECT_EQ(formatInternetDateTime(instant, 0s), "2026-04-26T12:00:00Z");
    EXPECT_EQ(formatInternetDateTime(instant, 53min + 28s), "2026-04-26T12:53:28+00:53:28");
    EXPECT_EQ(formatInternetDateTime(Instant{-1ms}, 0s), "1969-12-31T23:59:59Z");
}

TEST(UtcMilliseconds, HasThreeDigits) {
    EXPECT_EQ(formatUtcMilliseconds(Instant{sys_days{2026y / 4 / 26} + 14h + 3min + 22s + 7ms}),
              "2026-04-26T14:03:22.007Z");
    EXPECT_EQ(formatUtcMilliseconds(Instant{-1ms}), "1969-12-31T23:59:59.999Z");
}

} // namespace
} // namespace vesk
