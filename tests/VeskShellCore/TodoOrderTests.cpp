#include "VeskShellCore/TodoOrder.hpp"
#include "tests/VeskShellCore/TodoWorld.hpp"

namespace vesk::test {
namespace {

using namespace VeskTodoOperations;

class TodoOrder : public TodoWorld {
protected:
    std::vector<std::string> sorted() {
        std::vector<Reminder> reminders = store.stored;
        sortByAttention(reminders, clock());
        std::vector<std::string> identifiers;
        for (const Reminder& reminder : reminders) identifiers.push_back(reminder.identifier);
        return identifiers;
    }
    std::vector<std::string> kept(CapabilityTodoView view) {
        std::vector<std::string> identifiers;
        for (const Reminder& reminder : filteredReminders(store.stored, view, clock()))
            identifiers.push_back(reminder.identifier);
        return identifiers;
    }
};

using Identifiers = std::vector<std::string>;

TEST_F(TodoOrder, AttentionComesFirst) {
    addTodo("done early", day(2026, 4, 1), true).completionDate = now - 48h;
    addTodo("next week", day(2026, 5, 3));
    addTodo("today", day(2026, 4, 26));
    addTodo("done", day(2026, 4, 1), true).completionDate = now - 1h;
    addTodo("overdue", day(2026, 4, 20));
    addTodo("tomorrow", day(2026, 4, 27));
    addTodo("undated");
    EXPECT_EQ(sorted(), (Identifiers{"undated", "overdue", "today", "tomorrow", "next week", "done", "done early"}));
}

TEST_F(TodoOrder, CompletedOnesCompareDueDatesBeforeCompletionDates) {
    addTodo("due later", day(2026, 4, 2), true).completionDate = now;
    addTodo("due earlier", day(2026, 4, 1), true).completionDate = now - 48h;
    EXPECT_EQ(sorted(), (Identifiers{"due earlier", "due later"}));
}

TEST_F(TodoOrder, EqualDueDatesFallBackToTheLastTouch) {
    addTodo("old", day(2026, 5, 1)).created = now - 10h;
    addTodo("modified", day(2026, 5, 1)).lastModified = now - 1h;
    addTodo("new", day(2026, 5, 1)).created = now - 5h;
    addTodo("never", day(2026, 5, 1));
    EXPECT_EQ(sorted(), (Identifiers{"modified", "new", "old", "never"}));
}

TEST_F(TodoOrder, TitlesComeLastInPlainOrder) {
    addTodo("b", day(2026, 5, 1));
    addTodo("a", day(2026, 5, 1));
    addTodo("Z", day(2026, 5, 1));
    addTodo("untitled", day(2026, 5, 1)).title.reset();
    EXPECT_EQ(sorted(), (Identifiers{"untitled", "Z", "a", "b"}));
    EXPECT_FALSE(reminderComparator(store.stored[0], store.stored[0], clock()));
}

TEST_F(TodoOrder, ViewsKeepTheOrder) {
    addTodo("later", day(2026, 5, 3));
    addTodo("done today", day(2026, 4, 26), true);
    addTodo("today", day(2026, 4, 26));
    addTodo("overdue", day(2026, 4, 20));
    EXPECT_EQ(kept(CapabilityTodoView::open), (Identifiers{"later", "today", "overdue"}));
    EXPECT_EQ(kept(CapabilityTodoView::done), (Identifiers{"done today"}));
    EXPECT_EQ(kept(CapabilityTodoView::all), (Identifiers{"later", "done today", "today", "overdue"}));
    EXPECT_EQ(kept(CapabilityTodoView::today), (Identifiers{"today", "overdue"}));
}

TEST_F(TodoOrder, StatsCountOpenOnesForAttention) {
    addTodo("later", day(2026, 5, 3));
    addTodo("done today", day(2026, 4, 26), true);
    addTodo("today", day(2026, 4, 26));
    addTodo("overdue", day(2026, 4, 20));
    addTodo("undated");
    EXPECT_EQ(buildStats(store.stored, clock()),
              (CapabilityTodoStats{
                  .total = 5, .open = 4, .completed = 1, .dueToday = 1, .overdue = 2, .needsAttentionToday = 3}));
}

} // namespace
} // namespace vesk::test
