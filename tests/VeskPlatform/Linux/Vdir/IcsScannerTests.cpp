#include "VeskPlatform/Linux/Vdir/IcsScanner.hpp"

#include "tests/VeskPlatform/Linux/Vdir/CalendarText.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using namespace vdir;
using ::testing::ElementsAre;

std::int32_t dayNumber(std::string_view text) {
    return static_cast<std::int32_t>(std::chrono::floor<std::chrono::days>(wall(text)).time_since_epoch().count());
}

TEST(IcsScanner, FindsDamage) {
    const std::string whole = calendarOfEvent("UID:u\nDTSTART:20240101T090000\n");
    const struct {
        std::string name, text;
        std::size_t events;
        bool damaged;
    } cases[] = {
        {"whole", whole, 1, false},
        {"byte order mark", "\xEF\xBB\xBF" + whole, 1, false},
        {"line feeds alone", "BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:u\nEND:VEVENT\nEND:VCALENDAR\n", 1, false},
        {"no line end at the end", whole.substr(0, whole.size() - 2), 1, false},
        {"lower case and trailing blanks", "begin:vcalendar \nbegin:vevent\t\nend:vevent\nend:vcalendar\n", 1, false},
        {"several calendars", whole + whole, 2, false},
        {"no events", calendar(""), 0, false},
        {"empty", "", 0, true},
        {"binary", std::string("\x00\xFF\x89PNG\r\n\x1A\n", 11), 0, true},
        {"no calendar", event("UID:u\n"), 1, true},
        {"calendar cut off behind its event", whole.substr(0, whole.find("END:VCAL")), 1, true},
        {"event cut off", whole.substr(0, whole.find("END:VEVENT")), 0, true},
        {"event cut off before the next", calendar("BEGIN:VEVENT\nUID:a\n" + event("UID:b\nDTSTART:20240101T090000\n")),
         1, true},
        {"end without a begin", calendar("END:VEVENT\n"), 0, true},
        {"end of an alarm without its begin", calendar(event("UID:a\nEND:VALARM\n") + event("UID:b\n")), 1, true},
        {"alarm cut off", calendarOfEvent("UID:u\nBEGIN:VALARM\n"), 0, true},
        {"fold within the name of a component", calendar("BEG\n IN:VEVENT\nUID:u\nEND:VE\n VENT\n"), 1, false},
    };
    for (const auto& given : cases) {
        SCOPED_TRACE(given.name);
        const ScannedFile found = scanCalendarText(given.text);
        EXPECT_EQ(found.events.size(), given.events);
        EXPECT_EQ(found.damaged, given.damaged);
    }
}

TEST(IcsScanner, KeepsWholeEventsOfADamagedFile) {
    const CalendarText text("BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:a\nEND:VEVENT\nBEGIN:VEVENT\nUID:b\nDTSTA");
    ASSERT_EQ(text.scanned().events.size(), 1U);
    EXPECT_EQ(text.scanned().events[0].uid, "a");
}

TEST(IcsScanner, ReadsUidsAsTheParserDoes) {
    const struct {
        std::string line, uid;
    } cases[] = {
        {"UID:simple@example.org", "simple@example.org"},
        {"UID;X-P=\"a:b;c\":behind parameters", "behind parameters"},
        {"uid:lower case", "lower case"},
        {"UID:fol\n ded", "folded"},
        {"U\n ID:folded name", "folded name"},
        {"UID:a\\,b\\;c\\\\d", "a,b;c\\d"},
        {"UID: blanks ", "blanks"},
        {"UID:bad \xFF byte", "bad \uFFFD byte"},
        {"UIDX:no", ""},
        {"BEGIN:VALARM\nUID:alarm\nEND:VALARM", ""},
    };
    for (const auto& given : cases) {
        SCOPED_TRACE(given.line);
        const CalendarText text(calendarOfEvent(given.line + "\nDTSTART:20240101T090000\n"));
        ASSERT_EQ(text.scanned().events.size(), 1U);
        EXPECT_EQ(text.scanned().events[0].uid, given.uid);
        const auto components = text.components();
        ASSERT_EQ(components.size(), 1U);
        EXPECT_EQ(components[0].uid, given.uid);
    }
}

TEST(IcsScanner, SpansTheDaysOfAnEvent) {
    const struct {
        std::string lines;
        std::int32_t first, last;
    } cases[] = {
        {"DTSTART:20240110T090000\n", dayNumber("20240110"), dayNumber("20240110")},
        {"DTSTART;TZID=\"a:b\":20240110T090000\nDTEND:20240112T000000\n", dayNumber("20240110"), dayNumber("20240112")},
        {"DTSTART:20240110T090000\nDTEND:20240101T000000\n", dayNumber("20240110"), dayNumber("20240110")},
        {"DTSTART:20240110\nDURATION:P1W2D\n", dayNumber("20240110"), dayNumber("20240120")},
        {"DTSTART:20240110T090000\nDURATION:PT36H\n", dayNumber("20240110"), dayNumber("20240112")},
        {"DTSTART:20240110T090000\nDURATION:P99999999W\n", dayNumber("20240110"), DaySpan::unbounded},
        {"DTSTART:20240230T090000\n", INT32_MIN, DaySpan::unbounded},
        {"DTSTART:soon\n", INT32_MIN, DaySpan::unbounded},
        {"SUMMARY:no start\n", INT32_MIN, DaySpan::unbounded},
    };
    for (const auto& given : cases) {
        SCOPED_TRACE(given.lines);
        const auto found = scanCalendarText(calendarOfEvent(given.lines));
        ASSERT_EQ(found.items.size(), 1U);
        EXPECT_EQ(found.items[0].span.first, given.first);
        EXPECT_EQ(found.items[0].span.last, given.last);
    }
}

TEST(IcsScanner, SeesWhatRecurs) {
    for (const std::string line : {"RRULE:FREQ=DAILY\n", "RDATE:20240101\n", "EXRULE:FREQ=DAILY\n",
                                   "rrule:FREQ=DAILY\n", "RRU\n LE:FREQ=DAILY\n", "RDATE;VALUE=DATE:20240101\n"})
        EXPECT_TRUE(scanCalendarText(calendarOfEvent("DTSTART:20240101\n" + line)).items.at(0).recurs) << line;
    for (const std::string line : {"EXDATE:20240101\n", "X-RRULE:FREQ=DAILY\n", "DESCRIPTION:x\n RRULE:FREQ=DAILY\n"})
        EXPECT_FALSE(scanCalendarText(calendarOfEvent("DTSTART:20240101\n" + line)).items.at(0).recurs) << line;
}

TEST(IcsScanner, GroupsOverridesWithTheirMaster) {
    const auto found = scanCalendarText(
        calendar(event("UID:a\nDTSTART:20240101T090000\nRRULE:FREQ=DAILY\n") + event("UID:b\nDTSTART:20240101T090000\n")
                 + event("UID:a\nRECURRENCE-ID:20240102T090000\nDTSTART:20250102T090000\n")
                 + event("DTSTART:20240101\n") + event("DTSTART:20240101\n")));
    ASSERT_EQ(found.items.size(), 4U);
    EXPECT_THAT(found.items[0].events, ElementsAre(0, 2));
    EXPECT_TRUE(found.items[0].recurs);
    EXPECT_EQ(found.items[0].span.last, dayNumber("20250102"));
    EXPECT_TRUE(found.events[2].isOverride);
    EXPECT_THAT(found.items[1].events, ElementsAre(1));
}

TEST(IcsScanner, FindsZonesByTheirName) {
    const auto found = scanCalendarText(calendar("BEGIN:VTIMEZONE\nTZID:(UTC+01:00) Here\\, there\nBEGIN:STANDARD\n"
                                                 "DTSTART:19700101T000000\nEND:STANDARD\nEND:VTIMEZONE\n"));
    ASSERT_EQ(found.zones.size(), 1U);
    EXPECT_EQ(found.zones[0].tzid, "(UTC+01:00) Here, there");
}

TEST(IcsScanner, BearsLongLinesAndDeepNests) {
    const std::string long10 = "DESCRIPTION:" + std::string(std::size_t{10} << 20, 'x') + "\n";
    std::string manyFolds = "DESCRIPTION:x";
    for (int i = 0; i < 100'000; ++i) manyFolds += "\n y";
    for (const std::string& lines : {long10, manyFolds + "\n"}) {
        const CalendarText text(calendarOfEvent("UID:u\n" + lines + "DTSTART:20240101T090000\n"));
        EXPECT_FALSE(text.scanned().damaged);
        EXPECT_EQ(text.components().size(), 1U);
    }
    std::string nest;
    for (int i = 0; i < 100'000; ++i) nest += "BEGIN:X-NEST\n";
    EXPECT_TRUE(scanCalendarText(calendar(nest)).damaged);
    EXPECT_TRUE(scanCalendarText(calendarOfEvent(nest)).damaged);
}

TEST(IcsScanner, FindsTodos) {
    struct Case {
        const char *name, *text;
        std::vector<std::string> uids;
        bool damaged;
    };
    const Case cases[] = {
        {"two", "BEGIN:VTODO\nUID:a\nEND:VTODO\nBEGIN:VTODO\nUID:b\nEND:VTODO\n", {"a", "b"}, false},
        {"with an alarm", "BEGIN:VTODO\nBEGIN:VALARM\nUID:x\nEND:VALARM\nuid:a\nEND:VTODO\n", {"a"}, false},
        {"within its own kind", "BEGIN:VTODO\nUID:a\nBEGIN:VTODO\nUID:b\nEND:VTODO\n", {"b"}, true},
        {"cut off", "BEGIN:VTODO\nUID:a\nEND:VTODO\nBEGIN:VTODO\nUID:b\n", {"a"}, true},
        {"with an alarm cut off", "BEGIN:VTODO\nUID:a\nBEGIN:VALARM\nEND:VTODO\n", {}, true},
        {"with two names", "BEGIN:VTODO\nUID:a\nUID:b\nEND:VTODO\n", {"a"}, false},
        {"without a name", "BEGIN:VTODO\nEND:VTODO\n", {""}, false},
    };
    for (const Case& c : cases) {
        const ScannedFile scanned = scanCalendarText(calendar(c.text));
        std::vector<std::string> uids;
        for (const ScannedTodo& todo : scanned.todos) uids.push_back(todo.uid);
        EXPECT_EQ(uids, c.uids) << c.name;
        EXPECT_EQ(scanned.damaged, c.damaged) << c.name;
        EXPECT_TRUE(scanned.events.empty()) << c.name;
    }
}

TEST(PropertyValues, AreThoseOfTheComponentItself) {
    EXPECT_THAT(
        propertyValues(event("RRULE:a\nRRULE;X=\"1:2\":b\nrrule: fol\n ded \nRRULEX:no\nBEGIN:VALARM\nRRULE:no\n"
                             "END:VALARM\nRR\n ULE:c\n"),
                       "RRULE"),
        ElementsAre("a", "b", "folded", "c"));
}

} // namespace
} // namespace vesk::test
