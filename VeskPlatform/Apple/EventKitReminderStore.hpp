#pragma once

#import <EventKit/EventKit.h>

#include "VeskPlatform/ReminderStore.hpp"

NS_ASSUME_NONNULL_BEGIN

namespace vesk {

/// The user's to-do lists through EventKit, in a store of its own.
class EventKitReminderStore : public ReminderStore {
public:
    std::vector<ReminderList> lists() override;
    std::optional<ReminderList> defaultList() override;
    std::vector<ReminderSource> sources() override;
    ReminderList createList(const std::string& title, const std::optional<std::string>& sourceIdentifier) override;

    std::optional<std::vector<Reminder>> reminders(const std::string& listIdentifier,
                                                   std::chrono::seconds limit) override;
    std::optional<Reminder> reminder(const std::string& identifier) override;
    Reminder save(const Reminder& reminder) override;
    void remove(const Reminder& reminder) override;

private:
    EKSource* _Nullable sourceFor(const std::optional<std::string>& identifier);
    EKReminder* _Nullable stored(const std::string& identifier);
    EKReminder* requiredReminder(const std::string& identifier);
    EKReminder* newReminder(const std::string& listIdentifier);

    EKEventStore* store_ = [[EKEventStore alloc] init];
};

} // namespace vesk

NS_ASSUME_NONNULL_END
