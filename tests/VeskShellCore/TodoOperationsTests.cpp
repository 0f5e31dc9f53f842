#include "VeskSupport/Json.hpp"
#include "VeskSupport/Text.hpp"
#include "tests/VeskShellCore/TodoWorld.hpp"

namespace vesk::test {
namespace {

using namespace VeskTodoOperations;

class TodoOperations : public TodoWorld {
protected:
    CapabilityTodoResponse listed(CapabilityTodoView view = CapabilityTodoView::open) {
        return list(platform, view, platform.bundle);
    }
};

TEST_F(TodoOperations, AccessIsNeverPromptedFor) {
    const std::pair<AuthorizationStatus, const char*> refusals[] = {
        {0, "403 Reminders access has not been granted to Vesk yet. Request the reminders capability first."},
        {1, "403 Reminders access is restricted by macOS or device policy."},
        {2, "403 Reminders access was denied for Vesk. Enable Reminders access in System Settings and try again."},
        {-1, "500 Reminders authorization returned an unknown state."},
        {5, "500 Reminders authorization returned an unknown state."}};
    for (const auto& [status, text] : refusals) {
        grant(status);
        EXPECT_EQ(failureOf([&] { listed(); }), text) << status;
    }
    EXPECT_TRUE(platform.fakeConsent.requests.empty());
    EXPECT_TRUE(store.calls.empty());
    grant(4);
    EXPECT_EQ(failureOf([&] { listed(); }), "no failure");
}

TEST_F(TodoOperations, TheListIsFoundByItsExactTitle) {
    store.storedLists = {{"lower", "vesk todos", "local"}, {"blank", "Vesk Todos ", "local"}};
    EXPECT_EQ(listed().list, "Vesk Todos");
    EXPECT_EQ(store.calls, (std::vector<std::string>{"lists", "createList Vesk Todos in local", "reminders"}));
}

TEST_F(TodoOperations, TheFirstListOfThatTitleServes) {
    store.storedLists = {{"first", "Vesk Todos", "local"}, {"second", "Vesk Todos", "local"}};
    addTodo("a", day(2026, 5, 1)).listIdentifier = "first";
    addTodo("b", day(2026, 5, 1)).listIdentifier = "second";
    EXPECT_EQ(listed().items->size(), 1U);
    EXPECT_EQ(listed().items->front().id, "a");
}

TEST_F(TodoOperations, ANewListGoesToTheSourceOfTheDefaultList) {
    store.storedLists = {{"inbox", "Inbox", "account"}};
    store.defaultIdentifier = "inbox";
    listed();
    EXPECT_EQ(store.calls[1], "createList Vesk Todos in account");
}

TEST_F(TodoOperations, WithoutADefaultListTheSourceIsChosenByType) {
    const std::pair<std::vector<ReminderSource>, const char*> cases[] = {
        {{{"m", "", 3}, {"e", "", 1}, {"c", "", 2}, {"l", "", 0}}, "l"},
        {{{"m", "", 3}, {"e", "", 1}, {"c", "", 2}}, "c"},
        {{{"m", "", 3}, {"e", "", 1}}, "e"},
        {{{"x", "", 9}, {"m", "", 3}}, "m"},
        {{{"x", "", 9}, {"y", "", 8}}, "x"}};
    for (const auto& [sources, chosen] : cases) {
        store.storedLists.clear();
        store.calls.clear();
        store.storedSources = sources;
        listed();
        EXPECT_EQ(store.calls[1], std::string("createList Vesk Todos in ") + chosen);
    }
}

TEST_F(TodoOperations, ADefaultListOfNoKnownSourceLeavesTheChoice) {
    store.storedLists = {{"inbox", "Inbox", ""}};
    store.defaultIdentifier = "inbox";
    listed();
    EXPECT_EQ(store.calls[1], "createList Vesk Todos in local");
}

TEST_F(TodoOperations, WithoutAnySourceThereIsNoList) {
    store.storedLists.clear();
    store.storedSources.clear();
    EXPECT_EQ(failureOf([&] { listed(); }), "404 No writable reminders list is available.");
}

TEST_F(TodoOperations, AListThatCannotBeMadeFallsBackToTheDefaultList) {
    store.storedLists = {{"inbox", "Inbox", "account"}};
    store.defaultIdentifier = "inbox";
    store.createFailure = ErrorRecord("Store", 1, "no");
    EXPECT_EQ(listed().list, "Inbox");
    store.storedLists.clear();
    store.defaultIdentifier.reset();
    EXPECT_THROW(listed(), ErrorRecord);
}

TEST_F(TodoOperations, AFetchWithoutAnAnswerFails) {
    store.answers = false;
    EXPECT_EQ(failureOf([&] { listed(); }), "500 Failed to fetch todos.");
    EXPECT_EQ(failureOf([&] { stats(platform, platform.bundle); }), "500 Failed to fetch todos.");
    EXPECT_EQ(store.askedLimit, 10s);
}

TEST_F(TodoOperations, AnEmptyListAnswersWithEmptyItemsAndZeroes) {
    const auto response = listed(CapabilityTodoView::today);
    EXPECT_EQ(writeJson(toJson(response)), R"({
  "brokerPath" : "Vesk.app",
  "bundlePath" : "\/Applications\/Vesk.app",
  "detail" : "No todos matched the requested view.",
  "items" : [

  ],
  "list" : "Vesk Todos",
  "operation" : "list",
  "stats" : {
    "completed" : 0,
    "dueToday" : 0,
    "needsAttentionToday" : 0,
    "open" : 0,
    "overdue" : 0,
    "total" : 0
  },
  "view" : "today"
})");
}

TEST_F(TodoOperations, ListShowsTheViewAndCountsEverything) {
    addTodo("a", day(2026, 4, 27)).notes = "  n \n";
    Reminder& done = addTodo("b", at(2026, 4, 26, 9, 0), true);
    done.completionDate = now;
    done.created = now - 1h;
    done.lastModified = now + 500ms;
    const auto open = listed();
    EXPECT_EQ(open.detail, "Listed todos from the Vesk default reminders list.");
    EXPECT_EQ(open.items->size(), 1U);
    EXPECT_EQ(open.items->front().notes, "n");
    EXPECT_EQ(open.stats->total, 2);
    const CapabilityTodoItem item = listed(CapabilityTodoView::done).items->front();
    EXPECT_EQ(item.completionDate, "2026-04-26T08:30:00Z");
    EXPECT_EQ(item.createdAt, "2026-04-26T07:30:00Z");
    EXPECT_EQ(item.updatedAt, "2026-04-26T08:30:00Z");
    EXPECT_TRUE(item.dueToday);
    EXPECT_FALSE(item.overdue);
}

TEST_F(TodoOperations, StatsCarryNoItems) {
    addTodo("a");
    const auto response = stats(platform, platform.bundle);
    EXPECT_EQ(response.operation, "stats");
    EXPECT_EQ(response.detail, "Reported todo statistics from the Vesk default reminders list.");
    EXPECT_EQ(response.items, std::nullopt);
    EXPECT_EQ(response.view, std::nullopt);
    EXPECT_EQ(response.stats->overdue, 1);
}

TEST_F(TodoOperations, AddStoresTrimmedTexts) {
    const auto response = add(platform, " Milk ", " two ", "2026-04-26 18:00", platform.bundle);
    EXPECT_EQ(response.operation, "add");
    EXPECT_EQ(response.detail, "Added a todo to the Vesk default reminders list.");
    EXPECT_EQ(response.item->title, "Milk");
    EXPECT_EQ(response.item->due->iso, "2026-04-26T18:00");
    EXPECT_EQ(store.stored.at(0).listIdentifier, "own");
    EXPECT_EQ(store.stored.at(0).notes, "two");
}

TEST_F(TodoOperations, AddTreatsBlanksAsAbsent) {
    const auto response = add(platform, "Milk", "  ", " ", platform.bundle);
    EXPECT_EQ(response.item->due, std::nullopt);
    EXPECT_EQ(store.stored.at(0).notes, std::nullopt);
}

TEST_F(TodoOperations, AddChecksTheTitleBeforeAccessAndTheDueDateAfter) {
    grant(2);
    EXPECT_EQ(failureOf([&] { add(platform, " ", {}, "soon", platform.bundle); }), "400 Todo title is required.");
    EXPECT_EQ(failureOf([&] { add(platform, "x", {}, "soon", platform.bundle); }).substr(0, 3), "403");
    grant(3);
    EXPECT_EQ(failureOf([&] { add(platform, "x", {}, " soon", platform.bundle); }),
              "400 Invalid due value:  soon. Use YYYY-MM-DD, YYYY-MM-DD HH:MM, YYYY-MM-DDTHH:MM, or ISO 8601.");
    EXPECT_TRUE(store.stored.empty());
}

TEST_F(TodoOperations, IdsOfOtherListsAreNotFound) {
    addTodo("theirs").listIdentifier = "other";
    for (const char* id : {" theirs ", "nobody"})
        EXPECT_EQ(failureOf([&] { complete(platform, id, platform.bundle); }),
                  "404 Todo not found: " + std::string(trimmed(id)));
    EXPECT_EQ(failureOf([&] { reopen(platform, " ", platform.bundle); }), "400 Todo id is required.");
    grant(2);
    EXPECT_EQ(failureOf([&] { delete_(platform, " ", platform.bundle); }).substr(0, 3), "403");
}

TEST_F(TodoOperations, CompleteAndReopen) {
    addTodo("a");
    const auto completed = complete(platform, "a", platform.bundle);
    EXPECT_EQ(completed.operation, "complete");
    EXPECT_EQ(completed.detail, "Marked the todo complete.");
    EXPECT_TRUE(completed.item->completed);
    EXPECT_EQ(complete(platform, "a", platform.bundle).detail, "Marked the todo complete.");
    const auto reopened = reopen(platform, " a ", platform.bundle);
    EXPECT_EQ(reopened.operation, "reopen");
    EXPECT_EQ(reopened.detail, "Reopened the todo.");
    EXPECT_FALSE(reopened.item->completed);
    EXPECT_EQ(reopened.item->completionDate, std::nullopt);
}

TEST_F(TodoOperations, CompletingAgainLeavesTheDateToTheStore) {
    addTodo("a").completed = true;
    store.stored.front().completionDate = now - 48h;
    store.completionTime = now;
    EXPECT_EQ(complete(platform, "a", platform.bundle).item->completionDate, "2026-04-26T08:30:00Z");
}

TEST_F(TodoOperations, DeleteAnswersWithTheTodoAsItWas) {
    addTodo("a", day(2026, 5, 1));
    const auto response = delete_(platform, "a", platform.bundle);
    EXPECT_EQ(response.operation, "delete");
    EXPECT_EQ(response.detail, "Deleted the todo.");
    EXPECT_EQ(response.item->due->iso, "2026-05-01");
    EXPECT_TRUE(store.stored.empty());
}

TEST_F(TodoOperations, UpdateChangesWhatIsGiven) {
    addTodo("a", day(2026, 5, 1)).notes = "kept";
    const auto renamed = update(platform, "a", " New ", "", {}, false, platform.bundle);
    EXPECT_EQ(renamed.operation, "update");
    EXPECT_EQ(renamed.detail, "Updated the todo.");
    EXPECT_EQ(renamed.item->title, "New");
    EXPECT_EQ(renamed.item->notes, "kept");
    EXPECT_EQ(renamed.item->due->iso, "2026-05-01");
    EXPECT_EQ(update(platform, "a", {}, {}, "2026-06-01", true, platform.bundle).item->due->iso, "2026-06-01");
    EXPECT_EQ(update(platform, "a", {}, {}, {}, true, platform.bundle).item->due, std::nullopt);
}

TEST_F(TodoOperations, UpdateNeedsAChangeBeforeAccess) {
    grant(2);
    EXPECT_EQ(failureOf([&] { update(platform, "a", " ", "", "  ", false, platform.bundle); }),
              "400 Update requires at least one change.");
    grant(3);
    addTodo("a", day(2026, 5, 1));
    EXPECT_EQ(failureOf([&] { update(platform, "a", "x", {}, "soon", false, platform.bundle); }).substr(0, 3), "400");
    EXPECT_EQ(store.stored.front().title, "a");
}

TEST_F(TodoOperations, ErrorsOfTheStorePassThrough) {
    addTodo("a");
    store.saveFailure = ErrorRecord("Store", 7, "full");
    store.removeFailure = ErrorRecord("Store", 8, "gone");
    EXPECT_THROW(complete(platform, "a", platform.bundle), ErrorRecord);
    EXPECT_THROW(delete_(platform, "a", platform.bundle), ErrorRecord);
}

} // namespace
} // namespace vesk::test
