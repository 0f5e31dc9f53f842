#pragma once

#include "VeskPlatform/Linux/Vdir/CalendarFile.hpp"
#include "VeskPlatform/Linux/Vdir/CollectionIndex.hpp"
#include "VeskPlatform/Linux/Vdir/Folder.hpp"
#include "VeskPlatform/Linux/Vdir/IndexDatabase.hpp"

#include <string>
#include <vector>

namespace vesk::vdir {

/// A file that may answer a question, and which of its items may.
struct Candidate {
    std::string fileName;
    std::vector<std::size_t> items;
};

/// One collection at one moment: what its files are now, and through the index which of them a question concerns.
/// Answers may name too much, never too little; the files themselves have the last word.
class IndexedCollection {
public:
    /// Reads the files whose signature the index does not have. `path` is absolute.
    IndexedCollection(std::string path, DatedListing listing, IndexDatabase& database, Zones& zones);

    /// Items with an occurrence that may overlap [from, to), by file name. Remembers the days of recurring items.
    std::vector<Candidate> overlapping(Instant from, Instant to);
    std::vector<Candidate> withUid(const std::string& uid) const;
    /// The names of files of that health, in byte order.
    std::vector<std::string> filesOf(FileHealth health) const;
    const std::string& path() const { return path_; }
    std::size_t fileCount() const { return index_.files.size(); }

    /// Stores what was learned, if anything was.
    void save();

private:
    std::string pathOf(std::size_t file) const { return path_ + "/" + nameOf(file); }
    const char* nameOf(std::size_t file) const { return listing_.name(file); }
    void refresh(Instant now);
    void rebuild(const CollectionIndex& known, Instant now);
    void learnDays(std::int32_t firstChunk, std::int32_t lastChunk);
    void forgetChunksFarFrom(std::int32_t chunk);
    bool mayTouch(const IndexedItem& item, std::int32_t firstDay, std::int32_t lastDay) const;
    template <class Predicate> std::vector<Candidate> candidates(Predicate matches) const;

    std::string path_;
    IndexDatabase& database_;
    Zones& zones_;
    CollectionIndex index_;
    FolderListing listing_; ///< In the order of the index's files.
    bool changed_ = false;
};

} // namespace vesk::vdir
