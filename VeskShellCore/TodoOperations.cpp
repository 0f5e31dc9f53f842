#include "VeskShellCore/TodoOperations.hpp"

#include "VeskPlatform/Clock.hpp"
#include "VeskPlatform/Consent.hpp"
#include "VeskPlatform/LocaleSettings.hpp"
#include "VeskPlatform/ReminderStore.hpp"
#include "VeskShellCore/BundleResponse.hpp"
#include "VeskShellCore/TodoError.hpp"
#include "VeskShellCore/TodoOrder.hpp"
#include "VeskSupport/Iso8601.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <array>

namespace vesk::VeskTodoOperations {
namespace {

using namespace std::chrono_literals;
using Code = TodoError::Code;

/// How long the store may take to give a list.
constexpr auto fetchLimit = 10s;

void ensureReminderAccess(Platform& platform) {
    switch (platform.consent().authorizationStatus(PrivacyService::reminders)) {
    case 0:
        throw TodoError(Code::accessRefused,
                        "Reminders access has not been granted to Vesk yet. Request the reminders capability first.");
    case 1: throw TodoError(Code::accessRefused, "Reminders access is restricted by macOS or device policy.");
    case 2:
        throw TodoError(
            Code::accessRefused,
            "Reminders access was denied for Vesk. Enable Reminders access in System Settings and try again.");
    case 3:
    case 4: return;
    default: throw TodoError(Code::failed, "Reminders authorization returned an unknown state.");
    }
}

std::optional<ReminderSource> preferredReminderSource(ReminderStore& store) {
    const std::vector<ReminderSource> sources = store.sources();
    // Local, CalDAV, Exchange, MobileMe.
    for (const int type : {0, 2, 1, 3}) {
        const auto found = std::ranges::find(sources, type, &ReminderSource::type);
        if (found != sources.end()) return *found;
    }
    return sources.empty() ? std::nullopt : std::optional(sources.front());
}

ReminderList requiredList(std::optional<ReminderList> list) {
    if (!list) throw TodoError(Code::notFound, "No writable reminders list is available.");
    return std::move(*list);
}

ReminderList ensureTodoCalendar(ReminderStore& store) {
    const std::vector<ReminderList> lists = store.lists();
    const auto own = std::ranges::find(lists, todoListName, &ReminderList::title);
    if (own != lists.end()) return *own;
    std::optional<ReminderList> fallBack = store.defaultList();
    std::optional<std::string> source;
    if (fallBack && !fallBack->sourceIdentifier.empty())
        source = fallBack->sourceIdentifier;
    else if (const auto preferred = preferredReminderSource(store))
        source = preferred->identifier;
    if (!source) return requiredList(std::move(fallBack));
    try {
        return store.createList(todoListName, source);
    } catch (const ErrorRecord&) {
        // The to-dos then live in the user's default list, and the response tells its title.
        if (!fallBack) throw;
        return std::move(*fallBack);
    }
}

/// What every operation works with, once access is settled.
struct Desk {
    std::shared_ptr<ReminderStore> store;
    ReminderList list;
    TodoClock clock;
};

Desk openDesk(Platform& platform) {
    ensureReminderAccess(platform);
    auto store = platform.openReminderStore();
    ReminderList list = ensureTodoCalendar(*store);
    LocaleSettings& settings = platform.localeSettings();
    return {std::move(store), std::move(list),
            TodoClock(LocalCalendar(settings.timeZone()), settings.locale(), platform.clock().now())};
}

std::vector<Reminder> fetchReminders(const Desk& desk) {
    auto reminders = desk.store->reminders(desk.list.identifier, fetchLimit);
    if (!reminders) throw TodoError(Code::failed, "Failed to fetch todos.");
    sortByAttention(*reminders, desk.clock);
    return std::move(*reminders);
}

Reminder requireReminder(const Desk& desk, const std::string& id) {
    const std::string wanted(trimmed(id));
    if (wanted.empty()) throw TodoError(Code::argumentInvalid, "Todo id is required.");
    auto reminder = desk.store->reminder(wanted);
    if (!reminder || reminder->listIdentifier != desk.list.identifier)
        throw TodoError(Code::notFound, "Todo not found: " + wanted);
    return std::move(*reminder);
}

std::optional<std::string> utcText(const std::optional<Instant>& instant) {
    return instant ? std::optional(formatInternetDateTime(*instant, 0s)) : std::nullopt;
}

CapabilityTodoItem todoPayload(const Reminder& reminder, const TodoClock& clock) {
    CapabilityTodoItem item;
    item.id = reminder.identifier;
    item.title = trimmed(reminder.title.value_or(""));
    item.notes = trimmedOrAbsent(reminder.notes);
    item.completed = reminder.completed;
    if (reminder.due) item.due = duePayload(*reminder.due, clock);
    item.completionDate = utcText(reminder.completionDate);
    item.createdAt = utcText(reminder.created);
    item.updatedAt = utcText(reminder.lastModified);
    const DueStanding standing = dueStanding(reminder, clock);
    item.dueToday = standing.dueToday;
    item.overdue = standing.overdue;
    return item;
}

CapabilityTodoResponse responseFor(const Desk& desk, const Bundle& bundle, const char* operation, const char* detail) {
    auto response = responseOf<CapabilityTodoResponse>(bundle);
    response.operation = operation;
    response.list = desk.list.title;
    response.detail = detail;
    return response;
}

CapabilityTodoResponse itemResponse(const Desk& desk, const Bundle& bundle, const Reminder& reminder,
                                    const char* operation, const char* detail) {
    auto response = responseFor(desk, bundle, operation, detail);
    response.item = todoPayload(reminder, desk.clock);
    return response;
}

} // namespace

CapabilityTodoResponse list(Platform& platform, CapabilityTodoView view, const Bundle& bundle) {
    const Desk desk = openDesk(platform);
    const std::vector<Reminder> all = fetchReminders(desk);
    const std::vector<Reminder> shown = filteredReminders(all, view, desk.clock);
    auto response = responseFor(desk, bundle, "list",
                                shown.empty() ? "No todos matched the requested view."
                                              : "Listed todos from the Vesk default reminders list.");
    response.view = view;
    response.items.emplace();
    for (const Reminder& reminder : shown) response.items->push_back(todoPayload(reminder, desk.clock));
    response.stats = buildStats(all, desk.clock);
    return response;
}

CapabilityTodoResponse stats(Platform& platform, const Bundle& bundle) {
    const Desk desk = openDesk(platform);
    auto response =
        responseFor(desk, bundle, "stats", "Reported todo statistics from the Vesk default reminders list.");
    response.stats = buildStats(fetchReminders(desk), desk.clock);
    return response;
}

CapabilityTodoResponse add(Platform& platform, const std::string& title, const std::optional<std::string>& notes,
                           const std::optional<std::string>& due, const Bundle& bundle) {
    Reminder reminder;
    reminder.title = std::string(trimmed(title));
    if (reminder.title->empty()) throw TodoError(Code::argumentInvalid, "Todo title is required.");
    const Desk desk = openDesk(platform);
    reminder.listIdentifier = desk.list.identifier;
    reminder.notes = trimmedOrAbsent(notes);
    if (trimmedOrAbsent(due)) reminder.due = parseDue(*due, desk.clock);
    return itemResponse(desk, bundle, desk.store->save(reminder), "add",
                        "Added a todo to the Vesk default reminders list.");
}

CapabilityTodoResponse complete(Platform& platform, const std::string& id, const Bundle& bundle) {
    const Desk desk = openDesk(platform);
    Reminder reminder = requireReminder(desk, id);
    reminder.completed = true;
    reminder.completionDate.reset(); // the store's to set, also where the to-do was completed before
    return itemResponse(desk, bundle, desk.store->save(reminder), "complete", "Marked the todo complete.");
}

CapabilityTodoResponse reopen(Platform& platform, const std::string& id, const Bundle& bundle) {
    const Desk desk = openDesk(platform);
    Reminder reminder = requireReminder(desk, id);
    reminder.completed = false;
    reminder.completionDate.reset();
    return itemResponse(desk, bundle, desk.store->save(reminder), "reopen", "Reopened the todo.");
}

CapabilityTodoResponse delete_(Platform& platform, const std::string& id, const Bundle& bundle) {
    const Desk desk = openDesk(platform);
    const Reminder reminder = requireReminder(desk, id);
    auto response = itemResponse(desk, bundle, reminder, "delete", "Deleted the todo.");
    desk.store->remove(reminder);
    return response;
}

CapabilityTodoResponse update(Platform& platform, const std::string& id, const std::optional<std::string>& title,
                              const std::optional<std::string>& notes, const std::optional<std::string>& due,
                              bool clearDue, const Bundle& bundle) {
    const auto newTitle = trimmedOrAbsent(title), newNotes = trimmedOrAbsent(notes), newDue = trimmedOrAbsent(due);
    if (!newTitle && !newNotes && !newDue && !clearDue)
        throw TodoError(Code::argumentInvalid, "Update requires at least one change.");
    const Desk desk = openDesk(platform);
    Reminder reminder = requireReminder(desk, id);
    if (newTitle) reminder.title = newTitle;
    if (newNotes) reminder.notes = newNotes;
    if (newDue)
        reminder.due = parseDue(*newDue, desk.clock);
    else if (clearDue)
        reminder.due.reset();
    return itemResponse(desk, bundle, desk.store->save(reminder), "update", "Updated the todo.");
}

} // namespace vesk::VeskTodoOperations
