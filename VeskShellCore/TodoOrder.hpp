#pragma once

#include "VeskShellCore/TodoDates.hpp"

#include <vector>

namespace vesk::VeskTodoOperations {

/// Whether `a` comes before `b`: open overdue ones, open ones due today, other open ones by their due dates, then
/// completed ones, the last completed first.
bool reminderComparator(const Reminder& a, const Reminder& b, const TodoClock& clock);

/// Sorts by `reminderComparator`, stably.
void sortByAttention(std::vector<Reminder>& reminders, const TodoClock& clock);

std::vector<Reminder> filteredReminders(const std::vector<Reminder>& reminders, CapabilityTodoView view,
                                        const TodoClock& clock);

CapabilityTodoStats buildStats(const std::vector<Reminder>& reminders, const TodoClock& clock);

} // namespace vesk::VeskTodoOperations
