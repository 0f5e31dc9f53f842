#pragma once

#include "VeskPlatform/Linux/Vdir/FileHealth.hpp"
#include "VeskPlatform/Linux/Vdir/FileSignature.hpp"
#include "VeskPlatform/Linux/Vdir/IcsScanner.hpp"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::vdir {

struct IndexedFile {
    FileSignature signature;
    std::uint32_t firstItem = 0, itemCount = 0;
    FileHealth health = FileHealth::whole;
    std::uint32_t reserved = 0;
};

struct IndexedItem {
    static constexpr std::int32_t notRecurring = -1;

    std::uint64_t uidHash = 0;
    DaySpan span;
    std::uint32_t file = 0;
    /// Its place among the recurring items of the collection.
    std::int32_t recurring = notRecurring;
};

/// Which of the 64 days of a chunk an item's occurrences touch.
struct DayMask {
    std::uint64_t days = 0;
    std::uint64_t known = 0; ///< 0 or 1
};

/// What is remembered of a collection between runs: the state of each file and the days of each item. Days of items
/// that do not recur are those of their own wall; days of occurrences are UTC days. Both are widened by whoever asks.
struct CollectionIndex {
    static constexpr std::int32_t chunkDays = 64;
    static std::int32_t chunkOf(std::int32_t day);
    static std::uint64_t hashOf(std::string_view text);
    /// Blanks at the ends aside, which parsing drops.
    static std::uint64_t hashOfUid(std::string_view uid);

    /// The hash of the local zone's identifier, in which the days of all-day and floating occurrences are known.
    std::uint64_t localZone = 0;
    std::vector<IndexedFile> files;
    std::vector<IndexedItem> items;
    std::uint32_t recurringCount = 0;
    /// By number of the chunk; each list has `recurringCount` masks.
    std::map<std::int32_t, std::vector<DayMask>> chunks;

    /// Adds a file with its scanned items, at the end.
    void add(const FileSignature& signature, const ScannedFile& scanned, FileHealth health);
    /// Adds a file as `other` knows it, with the masks of its items.
    void addFrom(const CollectionIndex& other, std::size_t file);

    /// A file that may still change without a new signature, since it was written just before `now`, is forgotten at
    /// the next run, and so is one that could not be read: its signature is made to match none.
    void distrustUnsettledFiles(std::int64_t now);

    /// The bytes to store, for this machine; decoding gives nothing for bytes that are damaged or of another version.
    std::string encoded() const;
    static std::optional<CollectionIndex> decoded(std::string_view bytes);
};

} // namespace vesk::vdir
