#include "VeskPlatform/Linux/Vdir/RecurrenceRule.hpp"

#include "tests/VeskPlatform/Linux/Vdir/CalendarText.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using namespace vdir;

Instant utcInstant(WallTime time) { return Instant{time.time_since_epoch()}; }

std::vector<WallTime> times(const std::string& rule, std::string_view start, std::string_view from,
                            std::string_view to) {
    const EventTime time{wall(start), start.size() == 8 ? EventTime::Anchor::date : EventTime::Anchor::floating, {}};
    return ruleOccurrences(rule, time, wall(from), wall(to), utcInstant);
}

TEST(RecurrenceRule, ThatCannotBeReadGivesNothing) {
    for (const std::string rule :
         {"", "DAILY", "FREQ=", "FREQ=FORTNIGHTLY", "INTERVAL=2", "FREQ=DAILY;INTERVAL=0", "FREQ=DAILY;INTERVAL=-1",
          "FREQ=DAILY;INTERVAL=x", "FREQ=DAILY;COUNT=0", "FREQ=DAILY;COUNT=-5", "FREQ=DAILY;COUNT=x",
          "FREQ=DAILY;UNTIL=soon", "FREQ=DAILY;UNTIL=20241332", "RSCALE=HEBREW;FREQ=YEARLY",
          "RSCALE=GREGORIAN;FREQ=MONTHLY;SKIP=FORWARD"})
        EXPECT_TRUE(times(rule, "20240101T090000", "20240101", "20250101").empty()) << rule;
}

TEST(RecurrenceRule, IsReadWhateverItsCaseAndOrder) {
    for (const std::string rule : {"FREQ=DAILY;COUNT=3", "freq=daily;count=3", "COUNT=3;FREQ=DAILY",
                                   "FREQ=DAILY;COUNT=3;", "RSCALE=GREGORIAN;FREQ=DAILY;COUNT=3"})
        EXPECT_EQ(times(rule, "20240101T090000", "20240101", "20250101").size(), 3U) << rule;
}

TEST(RecurrenceRule, KeepsLargeNumbers) {
    EXPECT_EQ(times("FREQ=SECONDLY;INTERVAL=86400", "20240101T090000", "20240101", "20240111").size(), 10U);
    EXPECT_EQ(times("FREQ=DAILY;INTERVAL=65537", "20240101T090000", "20240101", "20240301").size(), 1U);
    EXPECT_EQ(times("FREQ=DAILY;COUNT=99999999999999999999", "20240101T090000", "20240101", "20240111").size(), 10U);
    EXPECT_EQ(times("FREQ=YEARLY;INTERVAL=99999999999999999999", "20240101T090000", "20240101", "99991231").size(), 1U);
}

TEST(RecurrenceRule, BelowADayHasNoMeaningForAllDayEvents) {
    EXPECT_TRUE(times("FREQ=HOURLY", "20240101", "20240101", "20240111").empty());
    EXPECT_EQ(times("FREQ=DAILY;BYHOUR=1,2;BYMINUTE=3", "20240101", "20240101", "20240110").size(), 10U);
}

TEST(RecurrenceRule, IgnoresNumbersOfWeekdaysWhereNothingIsCounted) {
    EXPECT_EQ(times("FREQ=WEEKLY;BYDAY=2MO", "20240101T090000", "20240101", "20240115").size(), 2U);
}

TEST(RecurrenceRule, IsCutOff) {
    EXPECT_EQ(times("FREQ=SECONDLY", "20240101T000000", "20240101", "20250101").size(), maximumOccurrences);
}

// Each of these walked for seconds, or for ever, in some implementation. The test's own time limit is the judge.
TEST(RecurrenceRule, NeverStallsItsReader) {
    for (const std::string start : {"00010101T000000", "20240101T000000"})
        for (const std::string frequency : {"YEARLY", "MONTHLY", "WEEKLY", "DAILY", "HOURLY", "MINUTELY", "SECONDLY"})
            for (const std::string parts :
                 {";BYMONTH=2;BYMONTHDAY=30", ";BYMONTH=2;BYMONTHDAY=30;COUNT=5", ";INTERVAL=2;BYSECOND=1;COUNT=5",
                  ";INTERVAL=30000;BYMONTH=2", ";INTERVAL=99999999999", ";COUNT=2000000000", ";BYSETPOS=300;COUNT=2",
                  ";BYYEARDAY=366;BYDAY=MO;COUNT=1000", ";BYHOUR=3;BYMINUTE=4;BYSECOND=5;BYMONTHDAY=31;BYMONTH=4",
                  ";INTERVAL=7;COUNT=900000000;BYDAY=SU", ";BYWEEKNO=53;BYMONTH=6;COUNT=3"}) {
                const std::string rule = "FREQ=" + frequency + parts;
                for (const WallTime time : times(rule, start, "25230101", "25241231"))
                    ASSERT_GE(time, wall("25230101")) << rule;
            }
}

TEST(RecurrenceRule, CountsStepsBeforeTheWindowExactly) {
    // Every 7 minutes from 00:03 on: the 100,000th is 699,993 minutes behind the first.
    const auto last = times("FREQ=MINUTELY;INTERVAL=7;COUNT=100000", "20240101T000300", "20250401", "20260101");
    ASSERT_FALSE(last.empty());
    EXPECT_EQ(last.back(), wall("20240101T000300") + std::chrono::minutes(699'993));
}

} // namespace
} // namespace vesk::test
