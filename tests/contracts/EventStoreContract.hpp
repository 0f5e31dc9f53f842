#pragma once

#include "VeskPlatform/EventStore.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>
#include <gtest/gtest.h>

namespace vesk::test {

/// An event that a test puts into a store.
struct StoredEvent {
    std::string calendar, identifier, title;
    Instant start{}, end{};
};

inline constexpr Instant sampleNoon{std::chrono::sys_days{std::chrono::year{2026} / 4 / 26} + std::chrono::hours(12)};
inline constexpr std::chrono::hours oneHour{1};

/// What every EventStore owes. `World` has `addCalendar(identifier, writable)` and `addEvent(StoredEvent)`, and
/// `store()`, called when all of these have been made, always gives the same store. `World::Ordinary` is held
/// while the store works, for worlds in which permissions matter.
template <class World> class EventStoreContract : public ::testing::Test {
protected:
    World world;
    typename World::Ordinary ordinary{};

    std::vector<std::string> titles(Instant from, Instant to, const std::vector<std::string>& calendars) {
        std::vector<std::string> result;
        for (const CalendarEvent& event : world.store().events(from, to, calendars))
            result.push_back(event.title.value_or("-"));
        std::sort(result.begin(), result.end());
        return result;
    }
    NewEvent newEvent(const std::string& calendar) const {
        NewEvent event;
        event.calendarIdentifier = calendar;
        event.title = "New";
        event.start = sampleNoon;
        event.end = sampleNoon + oneHour;
        return event;
    }
    void expectRefusal(const std::string& calendar) {
        EXPECT_THROW(world.store().save(newEvent(calendar)), ErrorRecord) << calendar;
        EXPECT_TRUE(titles(sampleNoon, sampleNoon + oneHour, {calendar}).empty());
    }
};
TYPED_TEST_SUITE_P(EventStoreContract);

TYPED_TEST_P(EventStoreContract, AnEmptyStoreHasNothing) {
    EXPECT_TRUE(this->world.store().calendars().empty());
    EXPECT_TRUE(this->titles(sampleNoon, sampleNoon + oneHour, {"home"}).empty());
    EXPECT_FALSE(this->world.store().event("x").has_value());
    this->expectRefusal("home");
}

TYPED_TEST_P(EventStoreContract, CalendarsKeepTheirOrderAndTellWhatTheyAllow) {
    this->world.addCalendar("a", true);
    this->world.addCalendar("b", false);
    const auto calendars = this->world.store().calendars();
    ASSERT_EQ(calendars.size(), 2U);
    EXPECT_EQ(calendars[0].identifier, "a");
    EXPECT_TRUE(calendars[0].allowsContentModifications);
    EXPECT_EQ(calendars[1].identifier, "b");
    EXPECT_FALSE(calendars[1].allowsContentModifications);
    EXPECT_EQ(this->world.store().calendars(), calendars);
}

TYPED_TEST_P(EventStoreContract, AnEventCountsWhereItOverlapsTheWindow) {
    this->world.addCalendar("home", true);
    this->world.addEvent({"home", "long", "long", sampleNoon, sampleNoon + 2 * oneHour});
    this->world.addEvent({"home", "point", "point", sampleNoon, sampleNoon});
    struct Case {
        const char* name;
        Instant from, to;
        std::vector<std::string> expected;
    };
    for (const Case& c : std::vector<Case>{
             {"within", sampleNoon + oneHour, sampleNoon + oneHour + oneHour / 2, {"long"}},
             {"around", sampleNoon - oneHour, sampleNoon + 3 * oneHour, {"long", "point"}},
             {"ends at its start", sampleNoon - oneHour, sampleNoon, {}},
             {"ends behind its start", sampleNoon - oneHour, sampleNoon + std::chrono::seconds(1), {"long", "point"}},
             {"starts at its start", sampleNoon, sampleNoon + oneHour, {"long", "point"}},
             {"starts behind its start", sampleNoon + std::chrono::seconds(1), sampleNoon + oneHour, {"long"}},
             {"starts before its end",
              sampleNoon + 2 * oneHour - std::chrono::seconds(1),
              sampleNoon + 9 * oneHour,
              {"long"}},
             {"starts at its end", sampleNoon + 2 * oneHour, sampleNoon + 9 * oneHour, {}},
             {"empty, within", sampleNoon + oneHour, sampleNoon + oneHour, {"long"}},
             {"empty, at its start", sampleNoon, sampleNoon, {}}})
        EXPECT_EQ(this->titles(c.from, c.to, {"home"}), c.expected) << c.name;
}

TYPED_TEST_P(EventStoreContract, OnlyNamedCalendarsAnswerAndUnknownOnesAreEmpty) {
    for (const std::string id : {"a", "b", "c"}) {
        this->world.addCalendar(id, true);
        this->world.addEvent({id, id, id, sampleNoon, sampleNoon + oneHour});
    }
    const Instant to = sampleNoon + oneHour;
    EXPECT_EQ(this->titles(sampleNoon, to, {"c", "a"}), (std::vector<std::string>{"a", "c"}));
    EXPECT_EQ(this->titles(sampleNoon, to, {"a", "a", "none"}), (std::vector<std::string>{"a"}));
    EXPECT_TRUE(this->titles(sampleNoon, to, {}).empty());
}

TYPED_TEST_P(EventStoreContract, AnEventKnowsItsCalendarAndItsTimes) {
    this->world.addCalendar("home", false);
    this->world.addEvent({"home", "x", "T", sampleNoon, sampleNoon + oneHour});
    const auto events = this->world.store().events(sampleNoon, sampleNoon + oneHour, {"home"});
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].identifier, "x");
    EXPECT_EQ(*events[0].calendar, this->world.store().calendars()[0]);
    EXPECT_EQ(events[0].start, sampleNoon);
    EXPECT_EQ(events[0].end, sampleNoon + oneHour);
    EXPECT_FALSE(events[0].allDay);
}

TYPED_TEST_P(EventStoreContract, AnIdentifierMeansTheFirstOccurrenceInTheFirstCalendarThatHasIt) {
    for (const std::string id : {"a", "b", "c"}) this->world.addCalendar(id, true);
    this->world.addEvent({"c", "x", "last calendar", sampleNoon - 99 * oneHour, sampleNoon});
    this->world.addEvent({"b", "x", "later", sampleNoon + oneHour, sampleNoon + 2 * oneHour});
    this->world.addEvent({"b", "x", "earlier", sampleNoon, sampleNoon + oneHour});
    const auto event = this->world.store().event("x");
    ASSERT_TRUE(event);
    EXPECT_EQ(event->title, "earlier");
    EXPECT_EQ(event->calendar->identifier, "b");
    for (const std::string other : {"", "X", "x ", "y"})
        EXPECT_FALSE(this->world.store().event(other).has_value()) << other;
}

TYPED_TEST_P(EventStoreContract, ASavedEventIsListedAndFoundAtOnce) {
    this->world.addCalendar("home", true);
    NewEvent wanted = this->newEvent("home");
    wanted.location = "Room";
    const CalendarEvent saved = this->world.store().save(wanted);
    EXPECT_FALSE(saved.identifier.empty());
    EXPECT_EQ(saved.title, "New");
    EXPECT_EQ(saved.start, wanted.start);
    EXPECT_EQ(saved.end, wanted.end);
    EXPECT_EQ(saved.location, "Room");
    EXPECT_EQ(saved.notes, std::nullopt);
    EXPECT_EQ(saved.calendar->identifier, "home");
    EXPECT_EQ(this->titles(sampleNoon, sampleNoon + oneHour, {"home"}), (std::vector<std::string>{"New"}));
    EXPECT_EQ(this->world.store().event(saved.identifier)->title, "New");
    EXPECT_NE(this->world.store().save(wanted).identifier, saved.identifier);
    EXPECT_EQ(this->titles(sampleNoon, sampleNoon + oneHour, {"home"}).size(), 2U);
}

TYPED_TEST_P(EventStoreContract, UnknownAndUnchangeableCalendarsRefuseAndStayAsTheyWere) {
    this->world.addCalendar("fixed", false);
    this->world.addCalendar("home", true);
    this->expectRefusal("fixed");
    this->expectRefusal("none");
    this->expectRefusal("");
    EXPECT_TRUE(this->titles(sampleNoon, sampleNoon + oneHour, {"home"}).empty());
}

REGISTER_TYPED_TEST_SUITE_P(EventStoreContract, AnEmptyStoreHasNothing, CalendarsKeepTheirOrderAndTellWhatTheyAllow,
                            AnEventCountsWhereItOverlapsTheWindow, OnlyNamedCalendarsAnswerAndUnknownOnesAreEmpty,
                            AnEventKnowsItsCalendarAndItsTimes,
                            AnIdentifierMeansTheFirstOccurrenceInTheFirstCalendarThatHasIt,
                            ASavedEventIsListedAndFoundAtOnce, UnknownAndUnchangeableCalendarsRefuseAndStayAsTheyWere);

} // namespace vesk::test
