#import "VeskPlatform/Apple/ReminderValues.hpp"

#import "VeskPlatform/Apple/FoundationValues.hpp"

namespace vesk {
namespace {

std::optional<int> component(NSInteger value) {
    if (value == NSDateComponentUndefined) return std::nullopt;
    return static_cast<int>(value);
}

NSInteger componentValue(const std::optional<int>& part) { return part ? *part : NSDateComponentUndefined; }

NSTimeZone* _Nullable zoneNamed(const std::optional<std::string>& name) {
    NSString* text = optionalNsString(name);
    return text == nil ? nil : [NSTimeZone timeZoneWithName:text];
}

/// Completing makes the framework set the completion date, also of what was completed before.
void applyCompletion(const Reminder& wanted, const Reminder& stored, EKReminder* reminder) {
    const bool isDatedByStore = wanted.completed && !wanted.completionDate;
    const bool isSame = wanted.completed == stored.completed && wanted.completionDate == stored.completionDate;
    if (isSame && !isDatedByStore) return;
    reminder.completed = wanted.completed;
    if (isDatedByStore) return;
    reminder.completionDate = wanted.completionDate ? nsDate(*wanted.completionDate) : nil;
}

} // namespace

std::optional<DueComponents> dueComponents(NSDateComponents* _Nullable components) {
    if (components == nil) return std::nullopt;
    return DueComponents{.year = component(components.year),
                         .month = component(components.month),
                         .day = component(components.day),
                         .hour = component(components.hour),
                         .minute = component(components.minute),
                         .second = component(components.second),
                         .timeZone = optionalUtf8(components.timeZone.name)};
}

NSDateComponents* _Nullable dateComponents(const std::optional<DueComponents>& due) {
    if (!due) return nil;
    NSDateComponents* components = [[NSDateComponents alloc] init];
    components.calendar = [NSCalendar calendarWithIdentifier:NSCalendarIdentifierGregorian];
    components.timeZone = zoneNamed(due->timeZone);
    components.year = componentValue(due->year);
    components.month = componentValue(due->month);
    components.day = componentValue(due->day);
    components.hour = componentValue(due->hour);
    components.minute = componentValue(due->minute);
    components.second = componentValue(due->second);
    return components;
}

Reminder reminderValue(EKReminder* reminder) {
    Reminder value;
    value.identifier = utf8(reminder.calendarItemIdentifier);
    value.listIdentifier = utf8(reminder.calendar.calendarIdentifier);
    value.title = optionalUtf8(reminder.title);
    value.notes = optionalUtf8(reminder.notes);
    value.completed = reminder.isCompleted;
    value.completionDate = optionalInstant(reminder.completionDate);
    value.due = dueComponents(reminder.dueDateComponents);
    value.created = optionalInstant(reminder.creationDate);
    value.lastModified = optionalInstant(reminder.lastModifiedDate);
    return value;
}

void applyChanges(const Reminder& wanted, EKReminder* reminder) {
    const Reminder stored = reminderValue(reminder);
    if (wanted.title != stored.title) reminder.title = optionalNsString(wanted.title);
    if (wanted.notes != stored.notes) reminder.notes = optionalNsString(wanted.notes);
    if (wanted.due != stored.due) reminder.dueDateComponents = dateComponents(wanted.due);
    applyCompletion(wanted, stored, reminder);
}

} // namespace vesk
