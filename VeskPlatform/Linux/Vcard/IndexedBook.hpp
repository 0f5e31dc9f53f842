#pragma once

#include "VeskPlatform/Linux/Vcard/CardIndex.hpp"
#include "VeskPlatform/Linux/Vdir/Folder.hpp"
#include "VeskPlatform/Linux/Vdir/IndexDatabase.hpp"

#include <string>
#include <vector>

namespace vesk::vcard {

/// Reads the cards of a file, and how well it could be read.
void readCards(const std::string& path, IndexedCardFile& file);

/// The cards of one address book as they are now; only files that are not in the state that the index knows are read.
class IndexedBook {
public:
    /// `path` is the canonical path of the folder.
    IndexedBook(std::string path, vdir::DatedListing listing, vdir::IndexDatabase& database);

    /// The numbers of the files in the byte order of their names.
    std::vector<std::size_t> filesByName() const;
    const char* nameOf(std::size_t file) const { return listing_.name(file); }
    /// The caller may change the cards.
    IndexedCardFile& file(std::size_t number) { return files_[number]; }
    std::size_t countOf(vdir::FileHealth health) const;

private:
    void readChanged(std::vector<IndexedCardFile> known, Instant now);

    std::string path_;
    vdir::FolderListing listing_;
    /// In the order of the listing.
    std::vector<IndexedCardFile> files_;
};

/// Address books come from elsewhere as one file with everyone's photos.
inline constexpr std::size_t maximumCardFileSize = std::size_t{256} << 20;

} // namespace vesk::vcard
