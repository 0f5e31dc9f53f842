#pragma once

#include "VeskPlatform/Linux/Vdir/VdirEventStore.hpp"
#include "tests/VeskPlatform/Linux/Vdir/CalendarText.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <string>
#include <vector>

namespace vesk::test {

/// A folder with calendars and a cache, and stores over it as separate runs of a program would open them.
struct StoreWorld {
    TemporaryFolder folder;
    FakeClock clock;
    std::string zone = "UTC";
    std::vector<std::string> userAddresses;
    std::vector<std::string> logged;

    /// The clock stands far behind every change of a file here, so that indexes trust them.
    StoreWorld() { clock.time = floor<std::chrono::days>(std::chrono::system_clock::now()) + std::chrono::days(400); }

    std::string write(const std::string& name, const std::string& bytes) const {
        return folder.write("calendars/" + name, bytes);
    }
    std::string root() const { return folder / "calendars"; }
    std::string cache() const { return folder / "cache"; }

    VdirEventStoreOptions options(const std::string& cacheFolder) {
        return {.root = root(),
                .cacheFolder = cacheFolder,
                .timeZone = zone,
                .userAddresses = userAddresses,
                .log = [this](const std::string& line) { logged.push_back(line); }};
    }
    VdirEventStore store(const std::string& cacheFolder) { return VdirEventStore(options(cacheFolder), clock); }
    VdirEventStore store() { return store(cache()); }
    VdirEventStore storeWithoutIndex() { return store(""); }

    static std::vector<std::string> answers(VdirEventStore store, Instant from, Instant to) {
        std::vector<std::string> identifiers, result;
        for (const EventCalendar& calendar : store.calendars()) identifiers.push_back(calendar.identifier);
        for (const CalendarEvent& e : store.events(from, to, identifiers)) result.push_back(text(e));
        return result;
    }
    /// The titles of the events of a day, in the store's order.
    std::vector<std::string> titles(Instant from, Instant to) {
        VdirEventStore opened = store();
        std::vector<std::string> identifiers, result;
        for (const EventCalendar& calendar : opened.calendars()) identifiers.push_back(calendar.identifier);
        for (const CalendarEvent& e : opened.events(from, to, identifiers)) result.push_back(e.title.value_or("-"));
        return result;
    }

    static std::string text(const CalendarEvent& e) {
        return e.calendar->identifier + "|" + e.identifier + "|" + e.title.value_or("-") + "|"
               + std::to_string(e.start.time_since_epoch().count()) + "|"
               + std::to_string(e.end.time_since_epoch().count()) + (e.allDay ? "|all-day" : "");
    }
};

inline Instant utc(std::string_view text) { return Instant{wall(text).time_since_epoch()}; }

} // namespace vesk::test
