#pragma once

#include "VeskShellCore/TodoDates.hpp"
#include "VeskShellCore/TodoError.hpp"
#include "VeskShellCore/TodoOperations.hpp"
#include "tests/fakes/FakePlatform.hpp"

#include <gtest/gtest.h>

namespace vesk::test {

using namespace std::chrono_literals;

/// The world of the to-do tests: access is granted, the list stands, it is 10:30 in Berlin on Sunday, 2026-04-26.
class TodoWorld : public ::testing::Test {
protected:
    using TodoError = VeskTodoOperations::TodoError;

    TodoWorld() {
        grant(3);
        store.storedLists = {{"other", "Shopping", "local"}, {"own", "Vesk Todos", "local"}};
        store.completionTime = now;
    }

    FakePlatform platform;
    FakeReminderStore& store = platform.fakeReminderStore;
    const Instant now = platform.fakeClock.time;

    void grant(AuthorizationStatus status) { platform.fakeConsent.statuses[PrivacyService::reminders] = status; }

    VeskTodoOperations::TodoClock clock() const { return {LocalCalendar("Europe/Berlin"), "en_US", now}; }

    static DueComponents day(int year, int month, int dayOfMonth) {
        return {
            .year = year, .month = month, .day = dayOfMonth, .hour = {}, .minute = {}, .second = {}, .timeZone = {}};
    }
    static DueComponents at(int year, int month, int dayOfMonth, int hour, int minute) {
        DueComponents due = day(year, month, dayOfMonth);
        due.hour = hour;
        due.minute = minute;
        return due;
    }

    /// Adds a to-do to the own list; the reference holds until the next one is added.
    Reminder& addTodo(const std::string& identifier, std::optional<DueComponents> due = {}, bool completed = false) {
        Reminder reminder;
        reminder.identifier = identifier;
        reminder.listIdentifier = "own";
        reminder.title = identifier;
        reminder.due = std::move(due);
        reminder.completed = completed;
        return store.stored.emplace_back(std::move(reminder));
    }

    /// "CODE TEXT" of the TodoError that `work` throws.
    template <class Work> static std::string failureOf(Work work) {
        try {
            work();
        } catch (const TodoError& error) {
            EXPECT_EQ(error.domain(), "VeskTodoOperations");
            return std::to_string(error.code()) + " " + error.description();
        }
        return "no failure";
    }
};

} // namespace vesk::test
