#pragma once

#import <EventKit/EventKit.h>

#include "VeskPlatform/ReminderStore.hpp"

#include <optional>

NS_ASSUME_NONNULL_BEGIN

namespace vesk {

Reminder reminderValue(EKReminder* reminder);

/// Sets what the wanted to-do has otherwise than the stored one: title, notes, due date and completion. What is left
/// untouched keeps what the value cannot hold.
void applyChanges(const Reminder& wanted, EKReminder* reminder);

/// What was never given is none.
std::optional<DueComponents> dueComponents(NSDateComponents* _Nullable components);
/// In the Gregorian calendar, which EventKit demands. A zone that the system does not know counts as none.
NSDateComponents* _Nullable dateComponents(const std::optional<DueComponents>& due);

} // namespace vesk

NS_ASSUME_NONNULL_END
