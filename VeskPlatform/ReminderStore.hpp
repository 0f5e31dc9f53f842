#pragma once

#include "VeskSupport/Instant.hpp"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

/// Parts of a date; what is missing was never given. Seconds are kept but never shown.
struct DueComponents {
    std::optional<int> year, month, day, hour, minute, second;
    /// The zone that the parts are in, as `LocalCalendar` takes it; none means the current one.
    std::optional<std::string> timeZone;

    bool operator==(const DueComponents&) const = default;
};

/// Where lists live. Type: 0 local, 1 Exchange, 2 CalDAV, 3 MobileMe.
struct ReminderSource {
    std::string identifier;
    std::string title;
    int type = 0;
};

struct ReminderList {
    std::string identifier;
    std::string title;
    /// Empty where the store does not tell.
    std::string sourceIdentifier;

    bool operator==(const ReminderList&) const = default;
};

struct Reminder {
    /// Empty for one that is not stored yet.
    std::string identifier;
    std::string listIdentifier;
    std::optional<std::string> title;
    std::optional<std::string> notes;
    bool completed = false;
    std::optional<Instant> completionDate;
    std::optional<DueComponents> due;
    std::optional<Instant> created;
    std::optional<Instant> lastModified;

    bool operator==(const Reminder&) const = default;
};

/// The user's to-do lists. Called on the main executor, one call at a time. A store that does not exist yet is an empty
/// one with one local source. Failures are ErrorRecords of the platform; a failed write leaves the store as it was.
class ReminderStore {
public:
    virtual ~ReminderStore() = default;

    /// All lists, of every source, in the store's order.
    virtual std::vector<ReminderList> lists() = 0;
    /// The list that new to-dos go to, none where no list can be written.
    virtual std::optional<ReminderList> defaultList() = 0;
    virtual std::vector<ReminderSource> sources() = 0;
    /// Makes a list in a source and stores it; without a source the store chooses. Where the store can tell
    /// that another program made one of that title since the lists were read, that one is given instead.
    virtual ReminderList createList(const std::string& title, const std::optional<std::string>& sourceIdentifier) = 0;

    /// The to-dos of a list in no order; none where the store has no answer within `limit`.
    virtual std::optional<std::vector<Reminder>> reminders(const std::string& listIdentifier,
                                                           std::chrono::seconds limit) = 0;
    /// The to-do of that identifier, from any list.
    virtual std::optional<Reminder> reminder(const std::string& identifier) = 0;
    /// Stores a new to-do or the changed title, notes, due date and completion of one that it gave; nothing else of it
    /// changes. What is completed without a completion date is dated by the store, which keeps the date of a to-do that
    /// was completed before or takes a new one. Returns the to-do as it now stands.
    virtual Reminder save(const Reminder& reminder) = 0;
    virtual void remove(const Reminder& reminder) = 0;
};

} // namespace vesk
