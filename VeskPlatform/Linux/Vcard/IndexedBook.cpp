#include "VeskPlatform/Linux/Vcard/IndexedBook.hpp"

#include "VeskPlatform/Linux/Vcard/CardScanner.hpp"
#include "VeskPlatform/Linux/Vdir/Parallel.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <numeric>

namespace vesk::vcard {

using vdir::FileHealth;

void readCards(const std::string& path, IndexedCardFile& file) {
    std::string bytes;
    try {
        bytes = vdir::readRegularFile(path, maximumCardFileSize);
    } catch (const PosixError& error) {
        file.health = error.code() == EFBIG ? FileHealth::damaged : FileHealth::unreadable;
        return;
    }
    const ScannedCards scanned = scanCards(bytes);
    if (scanned.damaged) file.health = FileHealth::damaged;
    for (const CardRange& range : scanned.cards) {
        auto card = readCard(range.of(bytes));
        // A card that cannot be read keeps its place, for the ones behind it are known by theirs.
        if (!card) file.health = FileHealth::damaged;
        file.cards.push_back(std::move(card).value_or(ReadCard{}));
    }
}

IndexedBook::IndexedBook(std::string path, vdir::DatedListing listing, vdir::IndexDatabase& database)
    : path_(std::move(path)), listing_(std::move(listing.files)) {
    std::vector<IndexedCardFile> known;
    if (const auto stored = database.load(path_))
        known = decodedCards(*stored).value_or(std::vector<IndexedCardFile>{});
    const auto& listed = listing_.signatures;
    const auto isSame = [](const IndexedCardFile& file, const vdir::FileSignature& signature) {
        return file.signature == signature;
    };
    if (std::equal(known.begin(), known.end(), listed.begin(), listed.end(), isSame)) {
        files_ = std::move(known);
        return;
    }
    readChanged(std::move(known), listing.before);
    database.store(path_, encodedCards(files_));
}

void IndexedBook::readChanged(std::vector<IndexedCardFile> known, Instant now) {
    std::vector<vdir::FileSignature> knownSignatures;
    for (const IndexedCardFile& file : known) knownSignatures.push_back(file.signature);
    const std::vector<std::size_t> places = vdir::placesOfUnchanged(listing_.signatures, knownSignatures);
    const std::int64_t nanoseconds = std::chrono::nanoseconds(now.time_since_epoch()).count();
    files_.resize(places.size());
    vdir::inParallel(places.size(), 64, [&](std::size_t i) {
        if (places[i] != vdir::notKnown) {
            files_[i] = std::move(known[places[i]]);
            return;
        }
        files_[i].signature = listing_.signatures[i];
        readCards(path_ + "/" + nameOf(i), files_[i]);
        const bool mayChangeUnseen = !vdir::isSettled(files_[i].signature, nanoseconds);
        if (mayChangeUnseen || files_[i].health == FileHealth::unreadable) vdir::distrust(files_[i].signature);
    });
}

std::vector<std::size_t> IndexedBook::filesByName() const {
    std::vector<std::size_t> numbers(files_.size());
    std::iota(numbers.begin(), numbers.end(), std::size_t{0});
    const auto isBefore = [&](std::size_t a, std::size_t b) { return std::strcmp(nameOf(a), nameOf(b)) < 0; };
    if (!std::ranges::is_sorted(numbers, isBefore)) std::ranges::sort(numbers, isBefore);
    return numbers;
}

std::size_t IndexedBook::countOf(FileHealth health) const {
    return static_cast<std::size_t>(std::ranges::count(files_, health, &IndexedCardFile::health));
}

} // namespace vesk::vcard
