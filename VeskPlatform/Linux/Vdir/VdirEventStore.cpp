#include "VeskPlatform/Linux/Vdir/VdirEventStore.hpp"

#include "VeskPlatform/Linux/RandomUuid.hpp"
#include "VeskPlatform/Linux/Vdir/CollectionTree.hpp"
#include "VeskPlatform/Linux/Vdir/FileReplacement.hpp"
#include "VeskPlatform/Linux/Vdir/IndexedCollection.hpp"
#include "VeskPlatform/Linux/Vdir/NewEventText.hpp"
#include "VeskPlatform/Linux/Vdir/Parallel.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <libical/ical.h>
#include <map>

namespace vesk {
namespace {

using namespace vdir;

std::vector<std::string> normalizedAddresses(const std::vector<std::string>& addresses) {
    std::vector<std::string> result;
    for (const std::string& address : addresses) {
        std::string normalized = lowercased(trimmed(address));
        if (normalized.starts_with("mailto:")) normalized.erase(0, 7);
        if (!normalized.empty()) result.push_back(std::move(normalized));
    }
    return result;
}

CalendarEvent eventOf(const Occurrence& occurrence, std::shared_ptr<const EventCalendar> calendar) {
    const EventComponent& component = *occurrence.component;
    CalendarEvent event;
    event.identifier = component.uid;
    event.calendar = std::move(calendar);
    event.title = component.summary;
    event.start = occurrence.start;
    event.end = occurrence.end;
    event.allDay = component.start.isDate();
    event.location = component.location;
    event.notes = component.description;
    event.url = component.url;
    event.status = component.status;
    event.availability = component.availability;
    event.lastModified = component.lastModified;
    event.hasRecurrenceRules = occurrence.hasRecurrenceRules;
    event.organizer = component.organizer;
    event.attendees = component.attendees;
    return event;
}

EventCalendar calendarOf(const Collection& collection) {
    return {collection.identifier, collection.title, collection.sourceTitle, collection.writable};
}

} // namespace

struct VdirEventStore::State {
    State(VdirEventStoreOptions given, Clock& systemClock)
        : options(std::move(given)), clock(systemClock), userAddresses(normalizedAddresses(options.userAddresses)),
          zones(std::make_shared<LocalCalendar>(options.timeZone), options.log),
          database(options.cacheFolder.empty() ? "" : options.cacheFolder + "/calendars.sqlite") {
        icalerror_set_errors_are_fatal(0); // a bad file is no reason to abort
    }

    const std::vector<Collection>& collections() {
        if (!found)
            found = findCollections(options.root, ".ics", [&](const std::string& path, int errnoValue) {
                unreadable.push_back(path);
                options.log("calendar-store folder unreadable errno=" + std::to_string(errnoValue));
            });
        return *found;
    }

    /// The files of a collection; none where its folder cannot be read any more.
    IndexedCollection* indexed(const Collection& collection) {
        auto& slot = indexes[collection.path];
        if (slot == nullptr) {
            try {
                slot = std::make_unique<IndexedCollection>(canonicalPath(collection.path), listingOf(collection),
                                                           database, zones);
            } catch (const PosixError& error) {
                options.log("calendar-store folder unreadable errno=" + std::to_string(error.code()));
                return nullptr;
            }
            logFiles(*slot, FileHealth::damaged, "damaged");
            logFiles(*slot, FileHealth::unreadable, "unreadable");
        }
        return slot.get();
    }

    /// Lists the folders that were not looked into yet, several at a time. What fails is tried again when it is used.
    void listAhead(const std::vector<const Collection*>& wanted) {
        std::vector<const Collection*> fresh;
        for (const Collection* collection : wanted)
            if (!indexes.contains(collection->path)) fresh.push_back(collection);
        std::vector<std::optional<DatedListing>> listedFolders(fresh.size());
        inParallel(fresh.size(), 2, [&](std::size_t i) {
            try {
                listedFolders[i] = listed(*fresh[i]);
            } catch (const PosixError&) {
                listedFolders[i].reset();
            }
        });
        for (std::size_t i = 0; i < fresh.size(); ++i)
            if (listedFolders[i]) listings.insert_or_assign(fresh[i]->path, std::move(*listedFolders[i]));
    }

    DatedListing listed(const Collection& collection) const {
        const Instant before = clock.now(); // what changes during the listing is looked at again next time
        return {before, listFiles(collection.path, ".ics")};
    }

    DatedListing listingOf(const Collection& collection) {
        auto ahead = listings.extract(collection.path);
        return ahead.empty() ? listed(collection) : std::move(ahead.mapped());
    }

    void logFiles(const IndexedCollection& collection, FileHealth health, const std::string& kind) const {
        const std::size_t count = collection.filesOf(health).size();
        if (count > 0) options.log("calendar-store files passed-over kind=" + kind + " count=" + std::to_string(count));
    }

    const Collection* collectionNamed(const std::string& identifier) {
        for (const Collection& collection : collections())
            if (collection.identifier == identifier) return &collection;
        return nullptr;
    }

    /// The item's VEVENTs with the UID that the index knows: the parser mangles escapes that the format does not have.
    std::vector<EventComponent> componentsOf(const CalendarFile& file, std::size_t item) const {
        auto components = parseItem(file, item, userAddresses);
        const ScannedItem& scanned = file.scanned.items[item];
        const std::string uid = repairedUtf8(file.scanned.events[scanned.events.front()].uid);
        for (EventComponent& component : components) component.uid = trimmed(uid);
        return components;
    }

    /// The occurrences of the candidates' items in [from, to), by file name and place in the file.
    std::vector<CalendarEvent> occurrences(const Collection& collection, const std::string& folder,
                                           const std::vector<Candidate>& candidates, Instant from, Instant to) {
        const auto calendar = std::make_shared<const EventCalendar>(calendarOf(collection));
        std::vector<std::vector<CalendarEvent>> perFile(candidates.size());
        inParallel(candidates.size(), 32, [&](std::size_t i) {
            const auto file = readCalendarFile(folder + "/" + candidates[i].fileName);
            if (!file) return;
            const ZoneFinder zoneOf = zoneFinder(*file, zones);
            for (const std::size_t item : candidates[i].items) {
                if (item >= file->scanned.items.size()) continue;
                const auto components = componentsOf(*file, item);
                for (const Occurrence& occurrence : occurrencesOf(components, from, to, zoneOf).occurrences)
                    perFile[i].push_back(eventOf(occurrence, calendar));
            }
        });
        std::vector<CalendarEvent> result;
        for (auto& events : perFile)
            result.insert(result.end(), std::make_move_iterator(events.begin()), std::make_move_iterator(events.end()));
        return result;
    }

    std::optional<CalendarEvent> firstOf(const CalendarFile& file, std::size_t item, const Collection& collection) {
        const auto components = componentsOf(file, item);
        const auto first = firstOccurrence(components, zoneFinder(file, zones));
        if (!first) return std::nullopt;
        return eventOf(*first, std::make_shared<const EventCalendar>(calendarOf(collection)));
    }

    /// The earliest occurrence of that identifier in one collection, whichever of its files have it.
    std::optional<CalendarEvent> firstNamed(const std::string& identifier, const IndexedCollection& indexed,
                                            const Collection& collection) {
        std::optional<CalendarEvent> first;
        for (const Candidate& candidate : indexed.withUid(identifier)) {
            const auto file = readCalendarFile(indexed.path() + "/" + candidate.fileName);
            if (!file) continue;
            for (const std::size_t item : candidate.items) {
                if (item >= file->scanned.items.size()) continue;
                const auto event = firstOf(*file, item, collection);
                if (event && event->identifier == identifier && (!first || event->start < first->start)) first = event;
            }
        }
        return first;
    }

    VdirEventStoreOptions options;
    Clock& clock;
    std::vector<std::string> userAddresses;
    Zones zones;
    IndexDatabase database;
    std::optional<std::vector<Collection>> found;
    std::vector<std::string> unreadable;
    /// Folders listed ahead of their use, by path.
    std::map<std::string, DatedListing> listings;
    std::map<std::string, std::unique_ptr<IndexedCollection>> indexes; ///< By path: identifiers may be repaired.
};

VdirEventStore::VdirEventStore(VdirEventStoreOptions options, Clock& clock)
    : state_(std::make_unique<State>(std::move(options), clock)) {}

VdirEventStore::~VdirEventStore() = default;

std::vector<EventCalendar> VdirEventStore::calendars() {
    std::vector<EventCalendar> result;
    for (const Collection& collection : state_->collections()) result.push_back(calendarOf(collection));
    return result;
}

std::vector<CalendarEvent> VdirEventStore::events(Instant from, Instant to,
                                                  const std::vector<std::string>& calendarIdentifiers) {
    // A date of four digits lies in between, whatever its zone; what is farther out would only overflow.
    using std::chrono::sys_days, std::chrono::year;
    from = std::max<Instant>(from, sys_days{year{-1} / 1 / 1});
    to = std::min<Instant>(to, sys_days{year{10001} / 1 / 1});
    std::vector<const Collection*> wanted;
    for (const Collection& collection : state_->collections())
        if (std::ranges::find(calendarIdentifiers, collection.identifier) != calendarIdentifiers.end())
            wanted.push_back(&collection);
    state_->listAhead(wanted);
    std::vector<CalendarEvent> result;
    for (const Collection* collection : wanted) {
        IndexedCollection* indexed = state_->indexed(*collection);
        if (indexed == nullptr) continue;
        auto events = state_->occurrences(*collection, indexed->path(), indexed->overlapping(from, to), from, to);
        result.insert(result.end(), std::make_move_iterator(events.begin()), std::make_move_iterator(events.end()));
        indexed->save();
    }
    return result;
}

std::optional<CalendarEvent> VdirEventStore::event(const std::string& identifier) {
    if (identifier.empty()) return std::nullopt;
    for (const Collection& collection : state_->collections()) {
        IndexedCollection* indexed = state_->indexed(collection);
        if (indexed == nullptr) continue;
        indexed->save();
        if (auto event = state_->firstNamed(identifier, *indexed, collection)) return event;
    }
    return std::nullopt;
}

CalendarEvent VdirEventStore::save(const NewEvent& event) {
    const Collection* collection = state_->collectionNamed(event.calendarIdentifier);
    if (collection == nullptr) throw ErrorRecord("VdirEventStore", 404, "The calendar does not exist any more.");
    if (!collection->writable)
        throw ErrorRecord("VdirEventStore", 403, "The calendar \"" + collection->title + "\" does not allow changes.");
    const std::string uid = randomUuid();
    CalendarFile file{newEventText(event, uid, state_->clock.now(), *state_->zones.local()), {}};
    file.scanned = scanCalendarText(file.bytes);
    auto saved = file.scanned.items.empty() ? std::nullopt : state_->firstOf(file, 0, *collection);
    if (!saved) throw ErrorRecord("VdirEventStore", 400, "The event's dates cannot be written.");
    createFileDurably(collection->path, uid + ".ics", file.bytes);
    state_->indexes.erase(collection->path);
    return *saved;
}

VdirSurvey VdirEventStore::survey() {
    VdirSurvey survey;
    for (const Collection& collection : state_->collections()) {
        ++survey.collections;
        IndexedCollection* indexed = state_->indexed(collection);
        if (indexed == nullptr) {
            survey.unreadableFolders.push_back(collection.path);
            continue;
        }
        survey.files += indexed->fileCount();
        const auto addPaths = [&](FileHealth health, std::vector<std::string>& paths) {
            for (const std::string& name : indexed->filesOf(health)) paths.push_back(collection.path + "/" + name);
        };
        addPaths(FileHealth::damaged, survey.damagedFiles);
        addPaths(FileHealth::unreadable, survey.unreadableFiles);
        indexed->save();
    }
    survey.unreadableFolders.insert(survey.unreadableFolders.end(), state_->unreadable.begin(),
                                    state_->unreadable.end());
    return survey;
}

} // namespace vesk
