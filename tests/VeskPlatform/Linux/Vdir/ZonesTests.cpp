#include "VeskPlatform/Linux/Vdir/Zones.hpp"

#include "tests/VeskPlatform/Linux/Vdir/CalendarText.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using namespace vdir;

const std::string officeZone = "BEGIN:VTIMEZONE\nTZID:Office\nBEGIN:STANDARD\nDTSTART:19701025T040000\n"
                               "RRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU\nTZOFFSETFROM:+0430\nTZOFFSETTO:+0330\n"
                               "END:STANDARD\nBEGIN:DAYLIGHT\nDTSTART:19700329T030000\n"
                               "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU\nTZOFFSETFROM:+0330\nTZOFFSETTO:+0430\n"
                               "END:DAYLIGHT\nEND:VTIMEZONE\n";

/// The start, in UTC, of an event at nine on 10 July 2024 in the zone that `tzid` means; New York is local.
struct Meant {
    std::string start;
    std::vector<std::string> logged;
};

Meant nineIn(const std::string& tzid, const std::string& definitions = "") {
    CalendarText text(calendar(definitions + event("DTSTART;TZID=" + tzid + ":20240710T090000\n")), "America/New_York");
    return {text.first().substr(0, 15), text.logged()};
}

TEST(Zones, AreMeantByNameOrDefinition) {
    const struct {
        std::string tzid, definitions, start;
    } cases[] = {
        {"Europe/Berlin", "", "20240710T070000"},
        {"\"Europe/Berlin\"", "", "20240710T070000"},
        {"/vendor/Europe/Berlin", "", "20240710T070000"},
        {"/vendor.example/20070129_1/Europe/Berlin", "", "20240710T070000"},
        {"/vendor/America/Argentina/Buenos_Aires", "", "20240710T120000"},
        {"UTC", "", "20240710T090000"},
        {"W. Europe Standard Time", "", "20240710T070000"},
        {"Tokyo Standard Time", "", "20240710T000000"},
        {"Office", officeZone, "20240710T043000"},
        {"\"Office\"", officeZone, "20240710T043000"},
    };
    for (const auto& given : cases) {
        SCOPED_TRACE(given.tzid);
        const Meant meant = nineIn(given.tzid, given.definitions);
        EXPECT_EQ(meant.start, given.start);
        EXPECT_TRUE(meant.logged.empty());
    }
}

TEST(Zones, PreferTheNameToTheDefinition) {
    std::string wrong = officeZone;
    wrong.replace(wrong.find("Office"), 6, "Europe/Berlin");
    EXPECT_EQ(nineIn("Europe/Berlin", wrong).start, "20240710T070000");
}

TEST(Zones, FindADefinitionWithAnEscapedName) {
    std::string escaped = officeZone;
    escaped.replace(escaped.find("Office"), 6, "Here\\, there");
    EXPECT_EQ(nineIn("\"Here, there\"", escaped).start, "20240710T043000");
}

TEST(Zones, AreLocalAndLoggedWithoutAMeaning) {
    const std::string local = "20240710T130000";
    for (const std::string definition : {"", "BEGIN:VTIMEZONE\nTZID:Nowhere\nEND:VTIMEZONE\n",
                                         "BEGIN:VTIMEZONE\nTZID:Nowhere\nBEGIN:STANDARD\nDTSTART:never\nEND:STANDARD\n"
                                         "END:VTIMEZONE\n"}) {
        SCOPED_TRACE(definition);
        const Meant meant = nineIn("Nowhere", definition);
        EXPECT_EQ(meant.start, local);
        EXPECT_EQ(meant.logged, std::vector<std::string>{"calendar-store event zone=unknown using=local"});
    }
}

TEST(Zones, AreLoggedOnceEach) {
    std::vector<std::string> logged;
    Zones zones(std::make_shared<LocalCalendar>("UTC"), [&](const std::string& line) { logged.push_back(line); });
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(zones.find("Nowhere", ""), zones.local());
        EXPECT_EQ(zones.find("Elsewhere", ""), zones.local());
    }
    EXPECT_EQ(logged.size(), 2U);
}

TEST(Zones, OfADefinitionChangeTheirOffset) {
    CalendarText text(calendar(officeZone + event("DTSTART;TZID=Office:20240330T090000\nRRULE:FREQ=DAILY;COUNT=2\n")));
    EXPECT_EQ(text.occurrences("20240301", "20240501"),
              (std::vector<std::string>{"20240330T053000/20240330T053000", "20240331T043000/20240331T043000"}));
}

} // namespace
} // namespace vesk::test
