#include "tests/VeskShellCore/TodoWorld.hpp"

namespace vesk::test {
namespace {

using namespace VeskTodoOperations;

class TodoDates : public TodoWorld {};

TEST_F(TodoDates, ADateIsADateOnlyTodo) {
    const DueComponents due = parseDue(" 2026-04-26 ", clock());
    EXPECT_EQ(dueIsoString(due), "2026-04-26");
    EXPECT_FALSE(duePayload(due, clock()).hasTime);
    EXPECT_EQ(due.timeZone, "Europe/Berlin");
    EXPECT_EQ(due.hour, std::nullopt);
}

TEST_F(TodoDates, ADateAndTimeIsLocal) {
    for (const char* text : {"2026-04-26 09:30", "2026-04-26T09:30"}) {
        const DueComponents due = parseDue(text, clock());
        EXPECT_EQ(dueIsoString(due), "2026-04-26T09:30") << text;
        EXPECT_TRUE(duePayload(due, clock()).hasTime) << text;
        EXPECT_EQ(due.second, std::nullopt) << text;
    }
}

TEST_F(TodoDates, AnInstantBecomesLocalComponents) {
    EXPECT_EQ(dueIsoString(parseDue("2026-04-26T09:30:00Z", clock())), "2026-04-26T11:30");
    EXPECT_EQ(dueIsoString(parseDue("2026-04-26T23:30:15.250-05:00", clock())), "2026-04-27T06:30");
    EXPECT_EQ(parseDue("2026-04-26T09:30:15Z", clock()).second, 15);
}

TEST_F(TodoDates, AnythingElseIsRefusedAsItCame) {
    for (const std::string text :
         {"", "  ", "tomorrow", " 2026-4-26", "2026-04-26 09:30:00", "2026-02-30", "2026-03-29 02:30", "2026-04-26x"})
        EXPECT_EQ(failureOf([&] { parseDue(text, clock()); }),
                  "400 Invalid due value: " + text
                      + ". Use YYYY-MM-DD, YYYY-MM-DD HH:MM, YYYY-MM-DDTHH:MM, or ISO 8601.");
}

TEST_F(TodoDates, MissingPartsPrintAsZero) {
    EXPECT_EQ(dueIsoString({}), "0000-00-00");
    DueComponents hourOnly;
    hourOnly.hour = 9;
    EXPECT_EQ(dueIsoString(hourOnly), "0000-00-00");
    EXPECT_TRUE(duePayload(hourOnly, clock()).hasTime);
}

TEST_F(TodoDates, ADueDateIsShownInTheUsersLocale) {
    EXPECT_EQ(duePayload(day(2026, 4, 26), clock()).local, "Apr 26, 2026");
    EXPECT_EQ(duePayload(at(2026, 4, 26, 15, 5), clock()).local, "Apr 26, 2026, 3:05\u202fPM");
    const TodoClock german(LocalCalendar("Europe/Berlin"), "de_DE", now);
    EXPECT_EQ(duePayload(at(2026, 4, 26, 15, 5), german).local, "26.04.2026, 15:05");
}

TEST_F(TodoDates, ComponentsOfAnotherZoneAreThatZonesTime) {
    DueComponents due = at(2026, 4, 26, 9, 0);
    due.timeZone = "America/New_York";
    EXPECT_EQ(clock().calendar.isoText(dueDate(due, clock())), "2026-04-26T15:00:00+02:00");
}

TEST_F(TodoDates, MissingPartsComeFromTheYearOne) {
    EXPECT_EQ(clock().calendar.isoText(dueDate({}, clock())).substr(0, 19), "0001-01-01T00:00:00");
}

TEST_F(TodoDates, PartsBeyondTheirRangeCarryOver) {
    EXPECT_EQ(dueDate(day(2026, 14, 1), clock()), dueDate(day(2027, 2, 1), clock()));
    EXPECT_EQ(dueDate(day(2026, 0, 1), clock()), dueDate(day(2025, 12, 1), clock()));
    EXPECT_EQ(dueDate(day(2026, -11, 1), clock()), dueDate(day(2025, 1, 1), clock()));
    EXPECT_EQ(dueDate(at(2026, 4, 26, 24, 0), clock()), dueDate(day(2026, 4, 27), clock()));
}

TEST_F(TodoDates, DueEarlierTodayIsDueTodayAndNotOverdue) {
    const Reminder todo = addTodo("a", at(2026, 4, 26, 8, 0));
    EXPECT_TRUE(isDueToday(todo, clock()));
    EXPECT_FALSE(isOverdue(todo, clock()));
}

TEST_F(TodoDates, YesterdayIsOverdueAndTomorrowIsNeither) {
    EXPECT_TRUE(isOverdue(addTodo("a", day(2026, 4, 25)), clock()));
    EXPECT_FALSE(isDueToday(addTodo("b", day(2026, 4, 25)), clock()));
    EXPECT_FALSE(isOverdue(addTodo("c", day(2026, 4, 27)), clock()));
    EXPECT_FALSE(isDueToday(addTodo("d", day(2026, 4, 27)), clock()));
}

TEST_F(TodoDates, ACompletedTodoIsNeverOverdueButMayBeDueToday) {
    EXPECT_FALSE(isOverdue(addTodo("a", day(2026, 4, 25), true), clock()));
    EXPECT_TRUE(isDueToday(addTodo("b", day(2026, 4, 26), true), clock()));
}

TEST_F(TodoDates, AnOpenTodoWithoutADueDateIsOverdue) {
    EXPECT_TRUE(isOverdue(addTodo("a"), clock()));
    EXPECT_FALSE(isDueToday(addTodo("b"), clock()));
    EXPECT_FALSE(isOverdue(addTodo("c", {}, true), clock()));
}

} // namespace
} // namespace vesk::test
