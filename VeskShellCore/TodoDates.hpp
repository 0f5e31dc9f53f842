#pragma once

#include "VeskPlatform/ReminderStore.hpp"
#include "VeskShellCore/TodoModels.hpp"
#include "VeskSupport/DisplayDate.hpp"
#include "VeskSupport/LocalCalendar.hpp"

#include <optional>
#include <string>

namespace vesk::VeskTodoOperations {

/// Where and when dates are looked at: one moment for a whole operation.
struct TodoClock {
    LocalCalendar calendar;
    DateDisplay display;
    Instant now;
    /// The calendar day of `now`.
    Instant dayStart, dayEnd;

    TodoClock(LocalCalendar currentCalendar, const std::string& locale, Instant currentTime);
    bool isToday(Instant instant) const { return instant >= dayStart && instant < dayEnd; }
};

/// The instant that components name in their own zone, else the current one. Missing parts come from the first moment
/// of the year 1, parts out of range carry over, so that every set of components names one.
Instant dueDate(const DueComponents& components, const TodoClock& clock);

std::string dueIsoString(const DueComponents& components);
CapabilityTodoDuePayload duePayload(const DueComponents& components, const TodoClock& clock);

/// How a to-do stands to the clock. Composing the date costs more than all else that a listing does with it, so whoever
/// asks for several of these asks once.
struct DueStanding {
    Instant due;
    bool dueToday, overdue;
};
DueStanding dueStanding(const Reminder& reminder, const TodoClock& clock);

/// Whether the due date lies in today. A to-do without one is looked at as if it were due in the year 1.
bool isDueToday(const Reminder& reminder, const TodoClock& clock);
/// Whether an open to-do was due before today; so is one without a due date.
bool isOverdue(const Reminder& reminder, const TodoClock& clock);

/// The components of a due date as a user gives it. Throws TodoError 400.
DueComponents parseDue(const std::string& text, const TodoClock& clock);

} // namespace vesk::VeskTodoOperations
