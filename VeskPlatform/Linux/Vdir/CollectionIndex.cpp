#include "VeskPlatform/Linux/Vdir/CollectionIndex.hpp"

#include "VeskPlatform/Linux/Vdir/PackedBytes.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace vesk::vdir {
namespace {

constexpr std::uint64_t formatVersion = 0x5645534B49445832; // "VESKIDX2"

struct Header {
    std::uint64_t version, checksum, localZone, files, items, recurring, chunks;
};

/// What the checksum is of: all that stands behind it.
std::string_view summed(std::string_view bytes) { return bytes.substr(offsetof(Header, localZone)); }

bool isConsistent(const CollectionIndex& index) {
    for (const IndexedFile& file : index.files)
        if (std::uint64_t{file.firstItem} + file.itemCount > index.items.size()) return false;
    return std::all_of(index.items.begin(), index.items.end(), [&](const IndexedItem& item) {
        return item.file < index.files.size() && item.recurring < static_cast<std::int64_t>(index.recurringCount)
               && item.recurring >= IndexedItem::notRecurring;
    });
}

} // namespace

std::int32_t CollectionIndex::chunkOf(std::int32_t day) {
    return day >= 0 ? day / chunkDays : -((-day + chunkDays - 1) / chunkDays);
}

std::uint64_t CollectionIndex::hashOf(std::string_view text) { return checksum(text); }

std::uint64_t CollectionIndex::hashOfUid(std::string_view uid) { return checksum(trimmed(uid)); }

void CollectionIndex::add(const FileSignature& signature, const ScannedFile& scanned, FileHealth health) {
    const auto file = static_cast<std::uint32_t>(files.size());
    files.push_back({signature, static_cast<std::uint32_t>(items.size()),
                     static_cast<std::uint32_t>(scanned.items.size()), health, 0});
    for (const ScannedItem& item : scanned.items) {
        const std::string& uid = scanned.events[item.events.front()].uid;
        items.push_back({hashOfUid(repairedUtf8(uid)), item.span, file, IndexedItem::notRecurring});
        if (!item.recurs) continue;
        items.back().recurring = static_cast<std::int32_t>(recurringCount++);
        for (auto& [chunk, masks] : chunks) masks.resize(recurringCount);
    }
}

void CollectionIndex::addFrom(const CollectionIndex& other, std::size_t file) {
    IndexedFile copy = other.files[file];
    const std::uint32_t firstOther = copy.firstItem;
    copy.firstItem = static_cast<std::uint32_t>(items.size());
    for (std::uint32_t i = 0; i < copy.itemCount; ++i) {
        IndexedItem item = other.items[firstOther + i];
        item.file = static_cast<std::uint32_t>(files.size());
        if (item.recurring != IndexedItem::notRecurring) {
            const auto before = static_cast<std::size_t>(item.recurring);
            item.recurring = static_cast<std::int32_t>(recurringCount++);
            for (auto& [chunk, masks] : chunks) masks.resize(recurringCount);
            for (const auto& [chunk, masks] : other.chunks) {
                auto& mine = chunks[chunk];
                mine.resize(recurringCount);
                mine.back() = masks[before];
            }
        }
        items.push_back(item);
    }
    files.push_back(copy);
}

void CollectionIndex::distrustUnsettledFiles(std::int64_t now) {
    for (IndexedFile& file : files)
        if (!isSettled(file.signature, now) || file.health == FileHealth::unreadable) distrust(file.signature);
}

std::string CollectionIndex::encoded() const {
    Header header{formatVersion, 0, localZone, files.size(), items.size(), recurringCount, chunks.size()};
    std::string bytes;
    bytes.reserve(sizeof header + files.size() * sizeof(IndexedFile) + items.size() * sizeof(IndexedItem));
    appendPacked(bytes, &header, 1);
    appendPacked(bytes, files.data(), files.size());
    appendPacked(bytes, items.data(), items.size());
    for (const auto& [chunk, masks] : chunks) {
        const std::int64_t number = chunk;
        appendPacked(bytes, &number, 1);
        appendPacked(bytes, masks.data(), masks.size());
    }
    header.checksum = checksum(summed(bytes));
    std::memcpy(bytes.data(), &header, sizeof header);
    return bytes;
}

std::optional<CollectionIndex> CollectionIndex::decoded(std::string_view bytes) {
    PackedSource source(bytes);
    Header header{};
    if (!source.take(&header, 1) || header.version != formatVersion || header.checksum != checksum(summed(bytes))
        || header.recurring > header.items)
        return std::nullopt;
    CollectionIndex index;
    index.localZone = header.localZone;
    index.recurringCount = static_cast<std::uint32_t>(header.recurring);
    if (!source.takeList(index.files, header.files) || !source.takeList(index.items, header.items)) return std::nullopt;
    for (std::uint64_t i = 0; i < header.chunks; ++i) {
        std::int64_t number = 0;
        std::vector<DayMask> masks;
        if (!source.take(&number, 1) || !source.takeList(masks, header.recurring)) return std::nullopt;
        index.chunks.emplace(static_cast<std::int32_t>(number), std::move(masks));
    }
    if (!source.rest().empty() || !isConsistent(index)) return std::nullopt;
    return index;
}

} // namespace vesk::vdir
