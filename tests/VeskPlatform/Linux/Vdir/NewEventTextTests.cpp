#include "VeskPlatform/Linux/Vdir/NewEventText.hpp"

#include "tests/VeskPlatform/Linux/Vdir/CalendarText.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

const Instant now{wall("20240601T120000").time_since_epoch()};

struct Written {
    std::string text, first;
};

/// The text of a new event between two walls of a zone, and what reading it back there gives.
Written writtenIn(const std::string& zone, std::string_view start, std::string_view end, bool allDay = false) {
    const LocalCalendar local(zone);
    NewEvent event;
    event.title = "Title";
    event.start = local.instant(wall(start));
    event.end = local.instant(wall(end));
    event.allDay = allDay;
    const std::string text = vdir::newEventText(event, "uid", now, local);
    CalendarText read(text, zone);
    EXPECT_FALSE(read.scanned().damaged);
    return {text, read.first(zone)};
}

TEST(NewEventText, HasWhatAnEventNeeds) {
    const auto made = writtenIn("Europe/Berlin", "20240710T090000", "20240710T100000");
    EXPECT_EQ(made.first, "20240710T090000/20240710T100000 Title");
    for (const std::string line : {"VERSION:2.0\r\n", "PRODID:", "UID:uid\r\n", "DTSTAMP:20240601T120000Z\r\n",
                                   "CREATED:20240601T120000Z\r\n", "LAST-MODIFIED:20240601T120000Z\r\n"})
        EXPECT_THAT(made.text, HasSubstr(line));
}

TEST(NewEventText, HasTheLocalZoneAndItsDefinition) {
    const auto made = writtenIn("Europe/Berlin", "20240710T090000", "20240710T100000");
    EXPECT_THAT(made.text, HasSubstr("DTSTART;TZID=Europe/Berlin:20240710T090000\r\n"));
    EXPECT_THAT(made.text, HasSubstr("DTEND;TZID=Europe/Berlin:20240710T100000\r\n"));
    EXPECT_THAT(made.text, HasSubstr("BEGIN:VTIMEZONE\r\nTZID:Europe/Berlin\r\n"));
}

TEST(NewEventText, IsInUtcWhereTheZoneIs) {
    for (const std::string zone : {"UTC", "Etc/UTC", "GMT", "Zulu"}) {
        const auto made = writtenIn(zone, "20240710T090000", "20240710T100000");
        EXPECT_THAT(made.text, HasSubstr("DTSTART:20240710T090000Z\r\n")) << zone;
        EXPECT_THAT(made.text, Not(HasSubstr("VTIMEZONE"))) << zone;
    }
}

TEST(NewEventText, IsInUtcWhereTheLocalTimeExistsTwice) {
    const LocalCalendar berlin("Europe/Berlin");
    NewEvent event;
    event.title = "Title";
    event.start = berlin.meaning(wall("20241027T023000")).later;
    event.end = event.start + std::chrono::hours(2);
    const std::string text = vdir::newEventText(event, "uid", now, berlin);
    EXPECT_THAT(text, HasSubstr("DTSTART:20241027T013000Z\r\n"));
    EXPECT_THAT(text, HasSubstr("DTEND;TZID=Europe/Berlin:20241027T043000\r\n"));
    CalendarText read(text, "Europe/Berlin");
    EXPECT_EQ(read.first(), "20241027T013000/20241027T033000 Title");
}

TEST(NewEventText, HasDatesForAnAllDayEvent) {
    for (const std::string zone : {"Europe/Berlin", "Pacific/Kiritimati", "UTC"}) {
        const auto made = writtenIn(zone, "20240710", "20240712", true);
        EXPECT_THAT(made.text, HasSubstr("DTSTART;VALUE=DATE:20240710\r\n"));
        EXPECT_THAT(made.text, HasSubstr("DTEND;VALUE=DATE:20240712\r\n"));
        EXPECT_THAT(made.text, Not(HasSubstr("VTIMEZONE")));
        EXPECT_EQ(made.first, "20240710T000000/20240712T000000 Title");
    }
}

TEST(NewEventText, KeepsEveryTextThroughEscapesAndFolds) {
    const LocalCalendar berlin("Europe/Berlin");
    for (const std::string& text :
         {std::string("a, b; c\\d \"e\": f"), std::string("line\nnext\n"), std::string(300, 'x'),
          std::string("\u00e4\u20ac\U0001F600 ") + std::string(200, 'y'), std::string("BEGIN:VEVENT\nEND:VCALENDAR")}) {
        SCOPED_TRACE(text);
        NewEvent event;
        event.title = text;
        event.start = now;
        event.end = now + std::chrono::hours(1);
        event.location = text;
        event.notes = text;
        CalendarText read(vdir::newEventText(event, "uid", now, berlin), "Europe/Berlin");
        const auto components = read.components();
        ASSERT_EQ(components.size(), 1U);
        EXPECT_EQ(components[0].summary, text);
        EXPECT_EQ(components[0].location, text);
        EXPECT_EQ(components[0].description, text);
    }
}

TEST(NewEventText, HasNoPlaceOrNotesWhereThereAreNone) {
    const auto made = writtenIn("UTC", "20240710T090000", "20240710T100000");
    EXPECT_THAT(made.text, Not(HasSubstr("LOCATION")));
    EXPECT_THAT(made.text, Not(HasSubstr("DESCRIPTION")));
}

} // namespace
} // namespace vesk::test
