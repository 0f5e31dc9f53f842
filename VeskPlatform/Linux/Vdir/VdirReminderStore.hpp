#pragma once

#include "VeskPlatform/Clock.hpp"
#include "VeskPlatform/Linux/Vdir/Survey.hpp"
#include "VeskPlatform/ReminderStore.hpp"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vesk {

struct VdirReminderStoreOptions {
    /// The root of the lists; a missing one is an empty store, and is made with the first list.
    std::string root;
    /// The current time zone, as `LocalCalendar` takes it.
    std::string timeZone;
    /// Hears of files that cannot be read, by the kind of error; never of names or content.
    std::function<void(const std::string&)> log;
};

/// To-do lists as vdir folders of VTODO files (RFC 5545), as todoman and vdirsyncer keep them. The identifier of a
/// to-do is its UID; without one it is not listed, and of several with the same one in a list the first by file name
/// is. A change is made to the file as it then stands, and touches only what the caller changed.
class VdirReminderStore : public ReminderStore {
public:
    VdirReminderStore(VdirReminderStoreOptions options, Clock& clock);
    ~VdirReminderStore() override;

    std::vector<ReminderList> lists() override;
    std::optional<ReminderList> defaultList() override;
    std::vector<ReminderSource> sources() override;
    ReminderList createList(const std::string& title, const std::optional<std::string>& sourceIdentifier) override;
    std::optional<std::vector<Reminder>> reminders(const std::string& listIdentifier,
                                                   std::chrono::seconds limit) override;
    std::optional<Reminder> reminder(const std::string& identifier) override;
    Reminder save(const Reminder& reminder) override;
    void remove(const Reminder& reminder) override;

    /// Looks at every file of the lists below `root`. Throws PosixError where the root cannot be listed.
    static VdirSurvey survey(const std::string& root);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace vesk
