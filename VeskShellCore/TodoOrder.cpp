#include "VeskShellCore/TodoOrder.hpp"

#include <algorithm>

namespace vesk::VeskTodoOperations {
namespace {

/// What the order looks at, worked out once for each to-do.
struct Rank {
    const Reminder* reminder;
    DueStanding standing;
    Instant touched;

    Rank(const Reminder& given, const TodoClock& clock)
        : reminder(&given), standing(dueStanding(given, clock)),
          touched(given.lastModified.value_or(given.created.value_or(Instant::min()))) {}
};

bool comesBefore(const Rank& a, const Rank& b) {
    const Reminder &left = *a.reminder, &right = *b.reminder;
    if (left.completed != right.completed) return right.completed;
    if (!left.completed) {
        if (a.standing.overdue != b.standing.overdue) return a.standing.overdue;
        if (a.standing.dueToday != b.standing.dueToday) return a.standing.dueToday;
    }
    if (a.standing.due != b.standing.due) return a.standing.due < b.standing.due;
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
        case CapabilityTodoView::today: {
            const DueStanding standing = dueStanding(reminder, clock);
            return !reminder.completed && (standing.dueToday || standing.overdue);
        }
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
        const DueStanding standing = dueStanding(reminder, clock);
        if (standing.dueToday) ++stats.dueToday;
        if (standing.overdue) ++stats.overdue;
    }
    stats.needsAttentionToday = stats.dueToday + stats.overdue;
    return stats;
}

} // namespace vesk::VeskTodoOperations
