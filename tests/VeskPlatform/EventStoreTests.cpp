#include "tests/VeskPlatform/Linux/Vdir/StoreWorld.hpp"
#include "tests/contracts/EventStoreContract.hpp"
#include "tests/fakes/FakeEventStore.hpp"
#include "tests/support/Privileges.hpp"

#include <filesystem>

namespace vesk::test {
namespace {

struct FakeEventStoreWorld {
    struct Ordinary {};
    FakeEventStore fake;
    std::map<std::string, std::shared_ptr<const EventCalendar>> calendars;

    FakeEventStore& store() { return fake; }
    void addCalendar(const std::string& identifier, bool writable) {
        calendars[identifier] = fake.add({identifier, identifier, "On This Computer", writable});
    }
    void addEvent(const StoredEvent& stored) {
        CalendarEvent event;
        event.identifier = stored.identifier;
        event.calendar = calendars.at(stored.calendar);
        event.title = stored.title;
        event.start = stored.start;
        event.end = stored.end;
        fake.occurrences.push_back(event);
    }
};

struct VdirEventStoreWorld {
    using Ordinary = WithoutPrivileges;
    StoreWorld files;
    std::vector<std::string> fixed;
    std::optional<VdirEventStore> opened;
    int count = 0;

    ~VdirEventStoreWorld() {
        for (const std::string& folder : fixed) std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    }
    VdirEventStore& store() {
        if (opened) return *opened;
        for (const std::string& folder : fixed) std::filesystem::permissions(folder, std::filesystem::perms(0500));
        return opened.emplace(files.options(files.cache()), files.clock);
    }
    void addCalendar(const std::string& identifier, bool writable) {
        files.write(identifier + "/color", "");
        if (!writable) fixed.push_back(files.root() + "/" + identifier);
    }
    void addEvent(const StoredEvent& stored) {
        const auto time = [](Instant instant) {
            return written(WallTime{floor<std::chrono::seconds>(instant).time_since_epoch()}) + "Z";
        };
        files.write(stored.calendar + "/" + std::to_string(count++) + ".ics",
                    calendarOfEvent("UID:" + stored.identifier + "\nSUMMARY:" + stored.title
                                    + "\nDTSTART:" + time(stored.start) + "\nDTEND:" + time(stored.end) + "\n"));
    }
};

/// The same without an index.
struct UnindexedWorld : VdirEventStoreWorld {
    VdirEventStore& store() {
        if (!opened) files.folder.write("cache", "a file in the folder's place");
        return VdirEventStoreWorld::store();
    }
};

using Worlds = ::testing::Types<FakeEventStoreWorld, VdirEventStoreWorld, UnindexedWorld>;
INSTANTIATE_TYPED_TEST_SUITE_P(All, EventStoreContract, Worlds);

} // namespace
} // namespace vesk::test
