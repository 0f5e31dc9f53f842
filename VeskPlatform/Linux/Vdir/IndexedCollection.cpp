#include "VeskPlatform/Linux/Vdir/IndexedCollection.hpp"

#include "VeskPlatform/Linux/Vdir/Parallel.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace vesk::vdir {
namespace {

using namespace std::chrono;

/// The wall of an item differs from UTC by less than this, the local one of odd settings of TZ excepted.
constexpr auto usualWallSlack = hours(16);
/// The rules of a zone may have changed since its days were looked at; Samoa once skipped a whole day.
constexpr auto zoneSlack = hours(27);
/// Older chunks are forgotten beyond this many: a year ahead needs seven.
constexpr std::size_t maximumChunks = 24;

std::int32_t dayOf(Instant instant) {
    return static_cast<std::int32_t>(floor<days>(instant).time_since_epoch().count());
}

Instant startOfUtcDay(std::int32_t day) { return sys_days{days{day}}; }

struct Examined {
    ScannedFile scanned;
    FileHealth health = FileHealth::whole;
};

Examined examine(const std::string& path) {
    int errnoValue = 0;
    auto file = readCalendarFile(path, &errnoValue);
    if (!file) return {{}, errnoValue == EFBIG ? FileHealth::damaged : FileHealth::unreadable};
    // An event without a readable start has no place in any calendar.
    const auto hasNoStart = [](const ScannedEvent& event) { return event.span.first == INT32_MIN; };
    const auto& events = file->scanned.events;
    const bool damaged = file->scanned.damaged || std::any_of(events.begin(), events.end(), hasNoStart);
    return {std::move(file->scanned), damaged ? FileHealth::damaged : FileHealth::whole};
}

/// The days of the chunks from `firstChunk` on, as bits, that the item's occurrences touch.
std::vector<std::uint64_t> daysTouched(const CalendarFile& file, std::size_t item, Zones& zones,
                                       std::int32_t firstChunk, std::size_t chunkCount) {
    constexpr std::int32_t chunkDays = CollectionIndex::chunkDays;
    const std::int32_t firstDay = firstChunk * chunkDays, dayCount = static_cast<std::int32_t>(chunkCount) * chunkDays;
    const auto found = occurrencesOf(parseItem(file, item, {}), startOfUtcDay(firstDay),
                                     startOfUtcDay(firstDay + dayCount), zoneFinder(file, zones));
    std::vector<std::uint64_t> chunks(chunkCount, found.cutOff ? ~std::uint64_t{0} : 0);
    for (const Occurrence& occurrence : found.occurrences) {
        const std::int32_t first = std::max(dayOf(occurrence.start) - firstDay, 0);
        const std::int32_t last = std::min(dayOf(occurrence.end) - firstDay, dayCount - 1);
        for (std::int32_t day = first; day <= last; ++day)
            chunks[static_cast<std::size_t>(day / chunkDays)] |= std::uint64_t{1} << (day % chunkDays);
    }
    return chunks;
}

} // namespace

IndexedCollection::IndexedCollection(std::string path, DatedListing listing, IndexDatabase& database, Zones& zones)
    : path_(std::move(path)), database_(database), zones_(zones), listing_(std::move(listing.files)) {
    refresh(listing.before);
}

void IndexedCollection::refresh(Instant now) {
    CollectionIndex known;
    if (const auto stored = database_.load(path_))
        known = CollectionIndex::decoded(*stored).value_or(CollectionIndex{});
    const std::uint64_t localZone = CollectionIndex::hashOf(zones_.local()->zoneIdentifier());
    if (known.localZone != localZone) known.chunks.clear();
    known.localZone = localZone;
    const auto isSame = [](const IndexedFile& file, const FileSignature& listed) { return file.signature == listed; };
    const auto& listed = listing_.signatures;
    if (std::equal(known.files.begin(), known.files.end(), listed.begin(), listed.end(), isSame))
        index_ = std::move(known);
    else
        rebuild(known, now);
}

void IndexedCollection::rebuild(const CollectionIndex& known, Instant now) {
    changed_ = true;
    index_.localZone = known.localZone;
    std::vector<FileSignature> knownSignatures;
    for (const IndexedFile& file : known.files) knownSignatures.push_back(file.signature);
    const std::vector<std::size_t> places = placesOfUnchanged(listing_.signatures, knownSignatures);
    std::vector<std::size_t> unread;
    for (std::size_t i = 0; i < places.size(); ++i)
        if (places[i] == notKnown) unread.push_back(i);
    std::vector<Examined> examined(unread.size());
    inParallel(unread.size(), 64, [&](std::size_t i) { examined[i] = examine(pathOf(unread[i])); });
    auto next = examined.begin();
    for (std::size_t i = 0; i < listing_.size(); ++i) {
        if (places[i] == notKnown) {
            index_.add(listing_.signatures[i], next->scanned, next->health);
            ++next;
        } else {
            index_.addFrom(known, places[i]);
        }
    }
    index_.distrustUnsettledFiles(nanoseconds(now.time_since_epoch()).count());
}

void IndexedCollection::learnDays(std::int32_t firstChunk, std::int32_t lastChunk) {
    const auto chunkCount = static_cast<std::size_t>(lastChunk - firstChunk) + 1;
    std::vector<std::vector<DayMask>*> chunks;
    for (std::int32_t chunk = firstChunk; chunk <= lastChunk; ++chunk) {
        chunks.push_back(&index_.chunks[chunk]);
        chunks.back()->resize(index_.recurringCount);
    }
    // By file, so that a file of many items is read once.
    std::vector<std::vector<std::size_t>> unknown;
    for (std::size_t i = 0; i < index_.items.size(); ++i) {
        const IndexedItem& item = index_.items[i];
        if (item.recurring == IndexedItem::notRecurring) continue;
        const auto isUnknown = [&](const auto* masks) {
            return (*masks)[static_cast<std::size_t>(item.recurring)].known == 0;
        };
        if (std::none_of(chunks.begin(), chunks.end(), isUnknown)) continue;
        if (unknown.empty() || index_.items[unknown.back().front()].file != item.file) unknown.emplace_back();
        unknown.back().push_back(i);
    }
    if (unknown.empty()) return;
    changed_ = true;
    inParallel(unknown.size(), 32, [&](std::size_t i) {
        const IndexedFile& indexed = index_.files[index_.items[unknown[i].front()].file];
        const auto file = readCalendarFile(pathOf(index_.items[unknown[i].front()].file));
        for (const std::size_t place : unknown[i]) {
            const std::size_t ordinal = place - indexed.firstItem;
            std::vector<std::uint64_t> days(chunkCount, ~std::uint64_t{0});
            if (file && ordinal < file->scanned.items.size())
                days = daysTouched(*file, ordinal, zones_, firstChunk, chunkCount);
            for (std::size_t c = 0; c < chunkCount; ++c)
                (*chunks[c])[static_cast<std::size_t>(index_.items[place].recurring)] = {days[c], 1};
        }
    });
}

void IndexedCollection::forgetChunksFarFrom(std::int32_t chunk) {
    while (index_.chunks.size() > maximumChunks) {
        const auto first = index_.chunks.begin(), last = std::prev(index_.chunks.end());
        index_.chunks.erase(chunk - first->first > last->first - chunk ? first : last);
    }
}

bool IndexedCollection::mayTouch(const IndexedItem& item, std::int32_t firstDay, std::int32_t lastDay) const {
    for (std::int32_t chunk = CollectionIndex::chunkOf(firstDay); chunk <= CollectionIndex::chunkOf(lastDay); ++chunk) {
        const auto masks = index_.chunks.find(chunk);
        if (masks == index_.chunks.end()) return true;
        const std::int32_t base = chunk * CollectionIndex::chunkDays;
        const std::int32_t low = std::max(firstDay - base, 0);
        const std::int32_t high = std::min(lastDay - base, CollectionIndex::chunkDays - 1);
        const std::uint64_t upTo = high == 63 ? ~std::uint64_t{0} : (std::uint64_t{1} << (high + 1)) - 1;
        const std::uint64_t wanted = upTo & (~std::uint64_t{0} << low);
        const DayMask mask = masks->second[static_cast<std::size_t>(item.recurring)];
        if (mask.known == 0 || (mask.days & wanted) != 0) return true;
    }
    return false;
}

template <class Predicate> std::vector<Candidate> IndexedCollection::candidates(Predicate matches) const {
    std::vector<Candidate> result;
    std::uint32_t lastFile = UINT32_MAX;
    for (std::size_t i = 0; i < index_.items.size(); ++i) {
        const IndexedItem& item = index_.items[i];
        if (!matches(item)) continue;
        if (item.file != lastFile) result.push_back({nameOf(item.file), {}});
        lastFile = item.file;
        result.back().items.push_back(i - index_.files[item.file].firstItem);
    }
    std::sort(result.begin(), result.end(), [](const auto& a, const auto& b) { return a.fileName < b.fileName; });
    return result;
}

std::vector<Candidate> IndexedCollection::overlapping(Instant from, Instant to) {
    if (to < from) return {};
    const auto localSlack = abs(zones_.local()->offset(from)) + hours(3);
    const seconds wallSlack = std::max<seconds>(usualWallSlack, localSlack);
    const DaySpan ownWall{dayOf(from - wallSlack), dayOf(to + wallSlack)};
    const std::int32_t firstDay = dayOf(from - zoneSlack), lastDay = dayOf(to + zoneSlack);
    const std::int32_t firstChunk = CollectionIndex::chunkOf(firstDay), lastChunk = CollectionIndex::chunkOf(lastDay);
    // A window of many years concerns nearly every recurring item: remembering its days would only cost.
    const bool worthLearning = lastChunk - firstChunk < static_cast<std::int32_t>(maximumChunks);
    if (index_.recurringCount > 0 && worthLearning) learnDays(firstChunk, lastChunk);
    auto result = candidates([&](const IndexedItem& item) {
        return item.recurring == IndexedItem::notRecurring ? item.span.overlaps(ownWall)
                                                           : mayTouch(item, firstDay, lastDay);
    });
    forgetChunksFarFrom(firstChunk);
    return result;
}

std::vector<Candidate> IndexedCollection::withUid(const std::string& uid) const {
    const std::uint64_t hash = CollectionIndex::hashOfUid(uid);
    return candidates([&](const IndexedItem& item) { return item.uidHash == hash; });
}

std::vector<std::string> IndexedCollection::filesOf(FileHealth health) const {
    std::vector<std::string> result;
    for (std::size_t i = 0; i < index_.files.size(); ++i)
        if (index_.files[i].health == health) result.emplace_back(nameOf(i));
    std::sort(result.begin(), result.end());
    return result;
}

void IndexedCollection::save() {
    if (!changed_) return;
    database_.store(path_, index_.encoded());
    changed_ = false;
}

} // namespace vesk::vdir
