#pragma once

#include "VeskPlatform/ReminderStore.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <gtest/gtest.h>

namespace vesk::test {

/// What every ReminderStore owes. `World::store()` always gives the same store, which is empty at first.
template <class World> class ReminderStoreContract : public ::testing::Test {
protected:
    World world;
    ReminderStore& store = world.store();

    std::vector<Reminder> all(const ReminderList& list) {
        return store.reminders(list.identifier, std::chrono::seconds(10)).value();
    }
    Reminder added(const ReminderList& list, const std::string& title) {
        Reminder reminder;
        reminder.listIdentifier = list.identifier;
        reminder.title = title;
        return store.save(reminder);
    }
};
TYPED_TEST_SUITE_P(ReminderStoreContract);

TYPED_TEST_P(ReminderStoreContract, AnEmptyStoreHasOneLocalSource) {
    EXPECT_TRUE(this->store.lists().empty());
    EXPECT_FALSE(this->store.defaultList());
    ASSERT_EQ(this->store.sources().size(), 1U);
    EXPECT_EQ(this->store.sources()[0].type, 0);
    EXPECT_FALSE(this->store.reminder("x"));
}

TYPED_TEST_P(ReminderStoreContract, AListIsThereOnceItIsMade) {
    const ReminderList list = this->store.createList("Vesk Todos", this->store.sources()[0].identifier);
    EXPECT_EQ(list.title, "Vesk Todos");
    EXPECT_EQ(list.sourceIdentifier, this->store.sources()[0].identifier);
    EXPECT_EQ(this->store.lists(), std::vector{list});
    EXPECT_TRUE(this->all(list).empty());
}

TYPED_TEST_P(ReminderStoreContract, ASavedTodoIsFoundInItsListAlone) {
    const ReminderList list = this->store.createList("A", "local"), other = this->store.createList("B", "local");
    const Reminder saved = this->added(list, "Milk");
    EXPECT_FALSE(saved.identifier.empty());
    EXPECT_EQ(saved.title, "Milk");
    EXPECT_EQ(this->all(list), std::vector{saved});
    EXPECT_TRUE(this->all(other).empty());
    EXPECT_EQ(this->store.reminder(saved.identifier), saved);
}

TYPED_TEST_P(ReminderStoreContract, CompletingDatesTheTodoOnce) {
    const ReminderList list = this->store.createList("A", "local");
    Reminder todo = this->added(list, "Milk");
    todo.completed = true;
    const Reminder done = this->store.save(todo);
    EXPECT_TRUE(done.completed);
    ASSERT_TRUE(done.completionDate);
    EXPECT_EQ(this->store.save(done).completionDate, done.completionDate);
    Reminder again = done;
    again.completionDate.reset();
    EXPECT_TRUE(this->store.save(again).completionDate);
    Reminder open = done;
    open.completed = false;
    open.completionDate.reset();
    EXPECT_FALSE(this->store.save(open).completed);
    EXPECT_FALSE(this->store.reminder(todo.identifier)->completionDate);
}

TYPED_TEST_P(ReminderStoreContract, ARemovedTodoIsGone) {
    const ReminderList list = this->store.createList("A", "local");
    const Reminder kept = this->added(list, "kept"), gone = this->added(list, "gone");
    this->store.remove(gone);
    EXPECT_EQ(this->all(list), std::vector{kept});
    EXPECT_FALSE(this->store.reminder(gone.identifier));
}

REGISTER_TYPED_TEST_SUITE_P(ReminderStoreContract, AnEmptyStoreHasOneLocalSource, AListIsThereOnceItIsMade,
                            ASavedTodoIsFoundInItsListAlone, CompletingDatesTheTodoOnce, ARemovedTodoIsGone);

} // namespace vesk::test
