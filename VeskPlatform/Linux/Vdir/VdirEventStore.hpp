#pragma once

#include "VeskPlatform/Clock.hpp"
#include "VeskPlatform/EventStore.hpp"
#include "VeskPlatform/Linux/Vdir/Survey.hpp"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vesk {

struct VdirEventStoreOptions {
    /// The root of the calendar collections; a missing one is an empty store.
    std::string root;
    /// Where the index is kept; empty for no index.
    std::string cacheFolder;
    /// The current time zone, as `LocalCalendar` takes it: that of all-day and floating events, and of new ones.
    std::string timeZone;
    /// The user's own mail addresses.
    std::vector<std::string> userAddresses;
    /// Hears of files that cannot be read, by the kind of error; never of names or content.
    std::function<void(const std::string&)> log;
};

/// Calendars as vdir folders of iCalendar files (RFC 5545), as khal and vdirsyncer keep them. A store shows the folders
/// as they were at its first question about each; files are only ever added, whole.
class VdirEventStore : public EventStore {
public:
    VdirEventStore(VdirEventStoreOptions options, Clock& clock);
    ~VdirEventStore() override;

    std::vector<EventCalendar> calendars() override;
    std::vector<CalendarEvent> events(Instant from, Instant to,
                                      const std::vector<std::string>& calendarIdentifiers) override;
    std::optional<CalendarEvent> event(const std::string& identifier) override;
    CalendarEvent save(const NewEvent& event) override;

    /// Throws PosixError where the root cannot be listed.
    VdirSurvey survey();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace vesk
