#pragma once

#include "VeskShellCore/CalendarError.hpp"
#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gtest/gtest.h>

namespace vesk::test {

using namespace std::chrono_literals;

inline EventParticipant attendee(int status, bool isCurrentUser = false) {
    EventParticipant result;
    result.status = status;
    result.isCurrentUser = isCurrentUser;
    return result;
}

/// The world of the calendar operations' tests: access is granted, it is 10:30 in Berlin on Sunday, 2026-04-26.
class CalendarWorld : public ::testing::Test {
protected:
    using CalendarError = VeskCalendarOperations::CalendarError;

    CalendarWorld() { grant(3); }

    FakePlatform platform;
    FakeEventStore& store = platform.fakeEventStore;
    const Instant now = platform.fakeClock.time;
    /// Local midnight of that day.
    const Instant midnight = now - 10h - 30min;

    void grant(AuthorizationStatus status) { platform.fakeConsent.statuses[PrivacyService::events] = status; }

    std::shared_ptr<const EventCalendar> addCalendar(const std::string& title, bool writable = true) {
        return store.add({"id-" + std::to_string(store.stored.size()), title, "On This Computer", writable});
    }

    /// Adds an event that begins `start` after the day's midnight; the reference holds until the next one is added.
    CalendarEvent& addEvent(const std::shared_ptr<const EventCalendar>& calendar, const std::string& title,
                            std::chrono::milliseconds start, std::chrono::milliseconds length = 1h) {
        CalendarEvent event;
        event.identifier = "event-" + std::to_string(store.occurrences.size());
        event.calendar = calendar;
        event.title = title;
        event.start = midnight + start;
        event.end = event.start + length;
        return store.occurrences.emplace_back(std::move(event));
    }

    /// Runs the task and returns "CODE TEXT" of the CalendarError that it throws.
    template <class T> static std::string failureOf(Task<T> task) {
        try {
            runTask(std::move(task));
        } catch (const CalendarError& error) {
            EXPECT_EQ(error.domain(), "VeskCalendarOperations");
            return std::to_string(error.code()) + " " + error.description();
        }
        return "no failure";
    }
};

/// The titles of a response's events or calendars, in order.
template <class Items> std::vector<std::string> titlesOf(const Items& items) {
    std::vector<std::string> titles;
    for (const auto& item : items) titles.push_back(item.title);
    return titles;
}

using Titles = std::vector<std::string>;

} // namespace vesk::test
