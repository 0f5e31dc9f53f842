#include "VeskShellCore/TodoOrder.hpp"

#include <algorithm>

namespace vesk::VeskTodoOperations {
namespace {

/// What the order looks at, worked out once for each to-do.
struct Rank {
    const Reminder* reminder;
    bool overdue, dueToday;
    Instant due, touched;

    Rank(const Reminder& given, const TodoClock& clock)
        : reminder(&given), overdue(isOverdue(given, clock)), dueToday(isDueToday(given, clock)),
          due(dueDate(given.due.value_or(DueComponents{}), clock)),
          touched(given.lastModified.value_or(given.created.value_or(Instant::min()))) {}
};

bool comesBefore(const Rank& a, const Rank& b) {
    const Reminder &left = *a.reminder, &right = *b.reminder;
    if (left.completed != right.completed) return right.completed;
    if (!left.completed) {
        if (a.overdue != b.overdue) return a.overdue;
        if (a.dueToday != b.dueToday) return a.dueToday;
    }
    if (a.due != b.due) return a.due < b.due;
    if (left.completed && left.completionDate && right.completionDate && *left.completionDate != *right.completionDate)
        return *left.completionDate > *right.completionDate;
    if (a.touched != b.touched) return a.touched > b.touched;
    return left.title.value_or("") < right.title.value_or("");
}

} // namespace

bool reminderComparator(const Reminder& a, const Reminder& b, const TodoClock& clock) {
    return comesBefore(Rank(a, clock), Rank(b, clock));
}

void sortByAttention(std::vector<Reminder>& reminders, const TodoClock& clock) {
    std::vector<Rank> ranks;
    ranks.reserve(reminders.size());
    for (const Reminder& reminder : reminders) ranks.emplace_back(reminder, clock);
    std::ranges::stable_sort(ranks, comesBefore);
    std::vector<Reminder> sorted;
    sorted.reserve(reminders.size());
    for (const Rank& rank : ranks) sorted.push_back(*rank.reminder);
    reminders = std::move(sorted);
}

std::vector<Reminder> filteredReminders(const std::vector<Reminder>& reminders, CapabilityTodoView view,
                                        const TodoClock& clock) {
    const auto isKept = [&](const Reminder& reminder) {
        switch (view) {
        case CapabilityTodoView::open: return !reminder.completed;
        case CapabilityTodoView::done: return reminder.completed;
        case CapabilityTodoView::all: return true;
        case CapabilityTodoView::today:
            return !reminder.completed && (isDueToday(reminder, clock) || isOverdue(reminder, clock));
        }
        return false;
    };
    std::vector<Reminder> kept;
    std::ranges::copy_if(reminders, std::back_inserter(kept), isKept);
    return kept;
}

CapabilityTodoStats buildStats(const std::vector<Reminder>& reminders, const TodoClock& clock) {
    CapabilityTodoStats stats;
    stats.total = static_cast<std::int64_t>(reminders.size());
    for (const Reminder& reminder : reminders) {
        if (reminder.completed) {
            ++stats.completed;
            continue;
        }
        ++stats.open;
        if (isDueToday(reminder, clock)) ++stats.dueToday;
        if (isOverdue(reminder, clock)) ++stats.overdue;
    }
    stats.needsAttentionToday = stats.dueToday + stats.overdue;
    return stats;
}

} // namespace vesk::VeskTodoOperations
