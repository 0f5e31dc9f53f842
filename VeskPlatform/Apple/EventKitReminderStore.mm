#import "VeskPlatform/Apple/EventKitReminderStore.hpp"

#import "VeskPlatform/Apple/EventKitCalendars.hpp"
#import "VeskPlatform/Apple/FoundationErrors.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"
#import "VeskPlatform/Apple/ReminderValues.hpp"

namespace vesk {
namespace {

// The port's numbers are the framework's own.
static_assert(EKSourceTypeLocal == 0 && EKSourceTypeExchange == 1 && EKSourceTypeCalDAV == 2
              && EKSourceTypeMobileMe == 3);

ReminderList reminderList(EKCalendar* calendar) {
    return {.identifier = utf8(calendar.calendarIdentifier),
            .title = utf8(calendar.title),
            .sourceIdentifier = utf8(calendar.source.sourceIdentifier)};
}

ErrorRecord gone(const char* description) { return {"EventKitReminderStore", 404, description}; }

/// What the store finds in the given calendars. None where it has no answer in time or fails; an answer that comes
/// later is dropped.
NSArray<EKReminder*>* _Nullable fetched(NSArray<EKCalendar*>* calendars, EKEventStore* store,
                                        std::chrono::seconds limit) {
    __block NSArray<EKReminder*>* found = nil;
    dispatch_semaphore_t answered = dispatch_semaphore_create(0);
    NSPredicate* ofCalendars = [store predicateForRemindersInCalendars:calendars];
    [store fetchRemindersMatchingPredicate:ofCalendars
                                completion:^(NSArray<EKReminder*>* _Nullable reminders) {
                                  found = reminders;
                                  dispatch_semaphore_signal(answered);
                                }];
    const std::chrono::nanoseconds wait = limit;
    const bool isLate = dispatch_semaphore_wait(answered, dispatch_time(DISPATCH_TIME_NOW, wait.count())) != 0;
    return isLate ? nil : found;
}

} // namespace

std::vector<ReminderList> EventKitReminderStore::lists() {
    std::vector<ReminderList> result;
    for (EKCalendar* calendar in [store_ calendarsForEntityType:EKEntityTypeReminder])
        result.push_back(reminderList(calendar));
    return result;
}

std::optional<ReminderList> EventKitReminderStore::defaultList() {
    EKCalendar* calendar = [store_ defaultCalendarForNewReminders];
    if (calendar == nil) return std::nullopt;
    return reminderList(calendar);
}

std::vector<ReminderSource> EventKitReminderStore::sources() {
    std::vector<ReminderSource> result;
    for (EKSource* source in store_.sources)
        result.push_back({.identifier = utf8(source.sourceIdentifier),
                          .title = utf8(source.title),
                          .type = static_cast<int>(source.sourceType)});
    return result;
}

ReminderList EventKitReminderStore::createList(const std::string& title,
                                               const std::optional<std::string>& sourceIdentifier) {
    EKSource* source = sourceFor(sourceIdentifier);
    if (source == nil) throw gone("The account of the to-do list does not exist any more.");
    EKCalendar* list = [EKCalendar calendarForEntityType:EKEntityTypeReminder eventStore:store_];
    list.title = nsString(title);
    list.source = source;
    NSError* error = nil;
    if (![store_ saveCalendar:list commit:YES error:&error]) throwError(error);
    return reminderList(list);
}

std::optional<std::vector<Reminder>> EventKitReminderStore::reminders(const std::string& listIdentifier,
                                                                      std::chrono::seconds limit) {
    NSArray<EKCalendar*>* list = calendarsNamed({listIdentifier}, EKEntityTypeReminder, store_);
    if (list.count == 0) return std::vector<Reminder>{}; // a predicate of no lists may mean all of them
    NSArray<EKReminder*>* found = fetched(list, store_, limit);
    if (found == nil) return std::nullopt;
    std::vector<Reminder> result;
    for (EKReminder* reminder in found) result.push_back(reminderValue(reminder));
    return result;
}

std::optional<Reminder> EventKitReminderStore::reminder(const std::string& identifier) {
    EKReminder* found = stored(identifier);
    if (found == nil) return std::nullopt;
    return reminderValue(found);
}

Reminder EventKitReminderStore::save(const Reminder& reminder) {
    EKReminder* kept =
        reminder.identifier.empty() ? newReminder(reminder.listIdentifier) : requiredReminder(reminder.identifier);
    applyChanges(reminder, kept);
    NSError* error = nil;
    if (![store_ saveReminder:kept commit:YES error:&error]) throwError(error);
    return reminderValue(kept);
}

void EventKitReminderStore::remove(const Reminder& reminder) {
    NSError* error = nil;
    if (![store_ removeReminder:requiredReminder(reminder.identifier) commit:YES error:&error]) throwError(error);
}

EKSource* _Nullable EventKitReminderStore::sourceFor(const std::optional<std::string>& identifier) {
    for (EKSource* source in store_.sources)
        if (!identifier || utf8(source.sourceIdentifier) == *identifier) return source;
    return nil;
}

EKReminder* _Nullable EventKitReminderStore::stored(const std::string& identifier) {
    EKCalendarItem* item = [store_ calendarItemWithIdentifier:nsString(identifier)];
    return [item isKindOfClass:[EKReminder class]] ? static_cast<EKReminder*>(item) : nil;
}

EKReminder* EventKitReminderStore::requiredReminder(const std::string& identifier) {
    EKReminder* found = stored(identifier);
    if (found == nil) throw gone("The to-do does not exist any more.");
    return found;
}

EKReminder* EventKitReminderStore::newReminder(const std::string& listIdentifier) {
    EKCalendar* list = calendarNamed(listIdentifier, EKEntityTypeReminder, store_);
    if (list == nil) throw gone("The to-do list does not exist any more.");
    EKReminder* made = [EKReminder reminderWithEventStore:store_];
    made.calendar = list;
    return made;
}

} // namespace vesk
