#include "VeskPlatform/Linux/Vcard/VcardContactStore.hpp"

#include "VeskPlatform/Linux/RandomUuid.hpp"
#include "VeskPlatform/Linux/Vcard/CardEditing.hpp"
#include "VeskPlatform/Linux/Vcard/CardScanner.hpp"
#include "VeskPlatform/Linux/Vcard/IndexedBook.hpp"
#include "VeskPlatform/Linux/Vcard/MailingText.hpp"
#include "VeskPlatform/Linux/Vdir/CollectionTree.hpp"
#include "VeskPlatform/Linux/Vdir/FileReplacement.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <cerrno>
#include <map>
#include <unordered_set>

namespace vesk {
namespace {

using namespace vdir;
using namespace vcard;

constexpr const char* extension = ".vcf";
constexpr const char* newBook = "default";

/// How often a change starts over because another program was faster.
constexpr int maximumAttempts = 10;

/// Where a card is: its file, and which of the file's cards it is.
struct Place {
    std::string path;
    std::optional<std::string> uid;
    std::size_t ordinal = 0;
};

/// The same without a text of its own, for looking through many.
struct PlaceInBook {
    const Collection& book;
    const char* fileName;
    std::size_t ordinal;
    bool byUid;

    Place place(const std::string& identifier) const {
        return {book.path + "/" + fileName, byUid ? std::optional(identifier) : std::nullopt, ordinal};
    }
};

struct BookInUse {
    Collection folder;
    std::unique_ptr<IndexedBook> indexed;
};

/// A contact and where it is.
struct Located {
    ContactCard contact;
    Place place;
};

/// A file as it was just read, and the range of one card in it.
struct CardInFile {
    std::string bytes;
    CardRange range;

    std::string_view text() const { return range.of(bytes); }
};

ErrorRecord unknownContact(const std::string& identifier) {
    return {"VcardContactStore", 404, "There is no contact with the identifier " + identifier + "."};
}

ErrorRecord unsettled() {
    return {"VcardContactStore", 409, "The contact is being changed by another program. Try again."};
}

/// What cards are called, each differently.
class Identifiers {
public:
    /// False where an earlier card has it. The text must outlive this.
    bool takeUid(const std::string& uid) { return uids_.insert(uid).second; }

    std::string path(const Collection& book, const std::string& fileName, std::size_t ordinal) {
        std::string path = book.identifier.empty() ? fileName : book.identifier + "/" + fileName;
        if (ordinal > 0) path += "#" + std::to_string(ordinal + 1);
        std::string readable = repairedUtf8(path);
        if (readable == path && !mayStandForOthers(book.identifier)) return readable;
        // Names that are not UTF-8 may read alike.
        const int number = ++repaired_[readable];
        return number == 1 ? readable : readable + " (" + std::to_string(number) + ")";
    }

private:
    static bool mayStandForOthers(std::string_view bookIdentifier) {
        return bookIdentifier.find("\xEF\xBF\xBD") != std::string_view::npos;
    }

    std::unordered_set<std::string_view> uids_;
    std::map<std::string, int> repaired_;
};

/// Whether a card that is only known by its place is still the person it was.
bool isSamePerson(const ContactCard& a, const ContactCard& b) {
    return a.givenName == b.givenName && a.middleName == b.middleName && a.familyName == b.familyName
           && a.nickname == b.nickname;
}

FileHealth healthOfCards(const std::string& path) {
    IndexedCardFile file;
    readCards(path, file);
    return file.health;
}

/// The card of that place in its file as it now stands; none where it went.
std::optional<CardInFile> cardAt(const Place& place, const ContactCard& base) {
    CardInFile found;
    try {
        found.bytes = readRegularFile(place.path, maximumCardFileSize);
    } catch (const PosixError& error) {
        if (error.code() == ENOENT) return std::nullopt;
        throw;
    }
    const ScannedCards scanned = scanCards(found.bytes);
    for (std::size_t i = 0; i < scanned.cards.size(); ++i) {
        found.range = scanned.cards[i];
        auto card = readCard(found.text());
        if (!card || card->isGroup) continue;
        const bool isIt = place.uid ? card->uid == place.uid : i == place.ordinal && isSamePerson(card->contact, base);
        if (isIt) return found;
    }
    return std::nullopt;
}

} // namespace

struct VcardContactStore::State {
    State(VcardContactStoreOptions chosen, Clock& systemClock)
        : options(std::move(chosen)), clock(systemClock),
          database(options.cacheFolder.empty() ? "" : options.cacheFolder + "/contacts.sqlite") {}

    std::vector<Collection> books() {
        const auto unreadable = [&](const std::string&, int errnoValue) {
            options.log("contact-store folder unreadable errno=" + std::to_string(errnoValue));
        };
        return findCollections(options.root, extension, unreadable, RootIs::collectionWhereItHoldsItems);
    }

    /// Calls `visit(contact, place)` for every contact, in the store's order, until it returns false.
    template <class Visit> void visitAll(Visit visit) {
        std::vector<BookInUse> opened;
        for (Collection& book : books())
            if (auto indexed = indexedBook(book)) opened.push_back({std::move(book), std::move(indexed)});
        Identifiers taken; // names texts of the opened books
        for (const BookInUse& book : opened)
            if (!visitBook(book, taken, visit)) return;
    }

    std::unique_ptr<IndexedBook> indexedBook(const Collection& book) {
        try {
            const Instant before = clock.now(); // what changes during the listing is looked at again next time
            auto indexed = std::make_unique<IndexedBook>(
                canonicalPath(book.path), DatedListing{before, listFiles(book.path, extension)}, database);
            logPassedOver(*indexed, FileHealth::damaged, "damaged");
            logPassedOver(*indexed, FileHealth::unreadable, "unreadable");
            return indexed;
        } catch (const PosixError& error) {
            options.log("contact-store folder unreadable errno=" + std::to_string(error.code()));
            return nullptr;
        }
    }

    template <class Visit> bool visitBook(const BookInUse& book, Identifiers& taken, Visit visit) {
        for (const std::size_t number : book.indexed->filesByName()) {
            std::vector<ReadCard>& cards = book.indexed->file(number).cards;
            for (std::size_t i = 0; i < cards.size(); ++i) {
                if (cards[i].isGroup) continue;
                ContactCard& contact = cards[i].contact;
                const bool byUid = cards[i].uid && taken.takeUid(*cards[i].uid);
                const char* name = book.indexed->nameOf(number);
                contact.identifier = byUid ? *cards[i].uid : taken.path(book.folder, name, i);
                if (!visit(contact, PlaceInBook{book.folder, name, i, byUid})) return false;
            }
        }
        return true;
    }

    void logPassedOver(const IndexedBook& book, FileHealth health, const std::string& kind) const {
        const std::size_t count = book.countOf(health);
        if (count > 0) options.log("contact-store files passed-over kind=" + kind + " count=" + std::to_string(count));
    }

    Located locate(const std::string& identifier) {
        std::optional<Located> found;
        visitAll([&](const ContactCard& contact, const PlaceInBook& place) {
            if (contact.identifier == identifier) found = Located{contact, place.place(identifier)};
            return !found;
        });
        if (!found) throw unknownContact(identifier);
        given.insert_or_assign(identifier, *found);
        return std::move(*found);
    }

    /// None where another program was faster.
    std::optional<ContactCard> tryUpdate(const ContactCard& wanted, FolderTurn& turn) {
        const auto known = given.find(wanted.identifier);
        const Located base = known == given.end() ? locate(wanted.identifier) : known->second;
        Place place = base.place;
        auto card = cardAt(place, base.contact);
        if (!card) {
            // Another program gave the file another name, or moved the card to another one.
            place = locate(wanted.identifier).place;
            given.insert_or_assign(wanted.identifier, base);
            card = cardAt(place, base.contact);
            if (!card) return std::nullopt;
        }
        const std::string edited = editedCardText(card->text(), base.contact, wanted, clock.now());
        std::string bytes = card->bytes;
        bytes.replace(card->range.begin, card->range.end - card->range.begin, edited);
        if (bytes != card->bytes && !replaceFileDurably(place.path, card->bytes, bytes, turn)) return std::nullopt;
        return remembered(edited, wanted.identifier, place);
    }

    /// The contact as its card now reads.
    ContactCard remembered(std::string_view text, const std::string& identifier, const Place& place) {
        auto card = readCard(text);
        if (!card) throw ErrorRecord("VcardContactStore", 400, "The contact cannot be written.");
        card->contact.identifier = identifier;
        given.insert_or_assign(identifier, Located{card->contact, place});
        return std::move(card->contact);
    }

    ContactCard add(const ContactCard& contact) {
        const std::string uid = randomUuid(), fileName = uid + extension;
        const std::string text = newCardText(contact, uid, clock.now());
        std::optional<std::string> folder = firstWritableBook();
        if (!folder && makeBook(fileName, text))
            return remembered(text, uid, {pathOfNewBook() + "/" + fileName, uid, 0});
        if (!folder) folder = firstWritableBook(); // another program was faster
        if (!folder) throw PosixError(EACCES, pathOfNewBook());
        createFileDurably(*folder, fileName, text);
        return remembered(text, uid, {*folder + "/" + fileName, uid, 0});
    }

    std::optional<std::string> firstWritableBook() {
        const std::vector<Collection> all = books();
        const auto book = std::ranges::find(all, true, &Collection::writable);
        return book == all.end() ? std::nullopt : std::optional(book->path);
    }

    std::string pathOfNewBook() const { return options.root + "/" + newBook; }

    /// A book with this one card in it; false where there is something of its name.
    bool makeBook(const std::string& fileName, const std::string& text) const {
        makeFolders(options.root);
        return createFolderDurably(options.root, newBook, fileName, text);
    }

    VcardContactStoreOptions options;
    Clock& clock;
    IndexDatabase database;
    /// What callers have, by identifier: what they change is told by the difference to it.
    std::map<std::string, Located, std::less<>> given;
};

VcardContactStore::VcardContactStore(VcardContactStoreOptions options, Clock& clock)
    : state_(std::make_unique<State>(std::move(options), clock)) {}

VcardContactStore::~VcardContactStore() = default;

void VcardContactStore::forEachContact(const std::function<void(const ContactCard&)>& visit) {
    state_->visitAll([&](const ContactCard& contact, const PlaceInBook&) {
        visit(contact);
        return true;
    });
}

ContactCard VcardContactStore::contact(const std::string& identifier) { return state_->locate(identifier).contact; }

ContactCard VcardContactStore::add(const ContactCard& card) { return state_->add(card); }

ContactCard VcardContactStore::update(const ContactCard& card) {
    FolderTurn turn;
    for (int i = 0; i < maximumAttempts; ++i)
        if (auto updated = state_->tryUpdate(card, turn)) return std::move(*updated);
    throw unsettled();
}

VdirSurvey VcardContactStore::survey(const std::string& root) {
    return surveyOf(root, extension, healthOfCards, RootIs::collectionWhereItHoldsItems);
}

std::string VcardContactStore::mailingText(const PostalAddress& address) const {
    return vcard::mailingText(address, state_->options.country);
}

} // namespace vesk
