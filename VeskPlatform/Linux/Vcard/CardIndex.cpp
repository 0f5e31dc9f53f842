#include "VeskPlatform/Linux/Vcard/CardIndex.hpp"

#include "VeskPlatform/Linux/Vdir/PackedBytes.hpp"
#include "VeskPlatform/Linux/Vdir/Parallel.hpp"

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace vesk::vcard {
namespace {

using vdir::PackedSource;

constexpr std::uint64_t formatVersion = 0x5645534B56434632; // "VESKVCF2"

struct Header {
    std::uint64_t version, checksum, files;
};

/// What is stored of a file ahead of the texts of its cards.
struct FileRow {
    vdir::FileSignature signature;
    std::uint64_t bytes;
    std::uint32_t cards, health;
};

std::string_view summed(std::string_view bytes) { return bytes.substr(offsetof(Header, files)); }

constexpr std::uint32_t absent = UINT32_MAX;

class Writer {
public:
    explicit Writer(std::string& out) : out_(out) {}

    bool text(const std::string& text) { return number(text.size()) && put(text); }
    bool text(const std::optional<std::string>& given) { return given ? text(*given) : number(absent); }
    bool flag(bool value) { return number(value ? 1 : 0); }
    template <class T, class Item> bool list(const std::vector<T>& items, Item item) {
        number(items.size());
        for (const T& each : items) item(each);
        return true;
    }

private:
    bool number(std::size_t value) {
        const auto narrow = static_cast<std::uint32_t>(value);
        vdir::appendPacked(out_, &narrow, 1);
        return true;
    }
    bool put(std::string_view bytes) {
        out_ += bytes;
        return true;
    }

    std::string& out_;
};

class Reader {
public:
    explicit Reader(std::string_view bytes) : source_(bytes) {}

    bool text(std::string& text) {
        std::uint32_t length = 0;
        return source_.take(&length, 1) && source_.takeText(text, length);
    }
    bool text(std::optional<std::string>& given) {
        std::uint32_t length = 0;
        if (!source_.take(&length, 1)) return false;
        if (length == absent) return true;
        return source_.takeText(given.emplace(), length);
    }
    bool flag(bool& value) {
        std::uint32_t number = 0;
        if (!source_.take(&number, 1)) return false;
        value = number != 0;
        return true;
    }
    template <class T, class Item> bool list(std::vector<T>& items, Item item) {
        std::uint32_t count = 0;
        // Each item takes a number of four bytes at least.
        if (!source_.take(&count, 1) || count > source_.rest().size() / sizeof count) return false;
        items.resize(count);
        for (T& each : items)
            if (!item(each)) return false;
        return true;
    }
    bool isAtEnd() const { return source_.rest().empty(); }

private:
    PackedSource source_;
};

/// One order of the fields for both directions. False where the reader finds too little.
template <class Archive, class Card> bool pass(Archive& archive, Card& card) {
    auto& contact = card.contact;
    const auto value = [&](auto& each) { return archive.text(each.label) && archive.text(each.value); };
    const auto address = [&](auto& each) {
        auto& parts = each.address;
        return archive.text(each.label) && archive.text(parts.street) && archive.text(parts.city)
               && archive.text(parts.state) && archive.text(parts.postalCode) && archive.text(parts.country)
               && archive.text(parts.isoCountryCode);
    };
    return archive.text(card.uid) && archive.flag(card.isGroup) && archive.text(contact.givenName)
           && archive.text(contact.middleName) && archive.text(contact.familyName) && archive.text(contact.nickname)
           && archive.text(contact.organizationName) && archive.text(contact.jobTitle)
           && archive.text(contact.departmentName) && archive.list(contact.phoneNumbers, value)
           && archive.list(contact.emailAddresses, value) && archive.list(contact.postalAddresses, address);
}

bool readCards(std::string_view bytes, std::vector<ReadCard>& cards) {
    Reader reader(bytes);
    for (ReadCard& card : cards)
        if (!pass(reader, card)) return false;
    return reader.isAtEnd();
}

/// Makes room for the files of the rows; none where the rows claim more than there is.
std::optional<std::vector<std::string_view>> textsOf(const std::vector<FileRow>& rows, std::string_view rest) {
    std::vector<std::string_view> texts;
    texts.reserve(rows.size());
    for (const FileRow& row : rows) {
        if (row.bytes > rest.size() || row.cards > row.bytes) return std::nullopt;
        texts.push_back(rest.substr(0, row.bytes));
        rest.remove_prefix(row.bytes);
    }
    if (!rest.empty()) return std::nullopt;
    return texts;
}

} // namespace

std::string encodedCards(const std::vector<IndexedCardFile>& files) {
    std::vector<FileRow> rows;
    std::string texts;
    Writer writer(texts);
    for (const IndexedCardFile& file : files) {
        const std::size_t start = texts.size();
        for (const ReadCard& card : file.cards) pass(writer, card);
        rows.push_back({file.signature, texts.size() - start, static_cast<std::uint32_t>(file.cards.size()),
                        static_cast<std::uint32_t>(file.health)});
    }
    Header header{formatVersion, 0, rows.size()};
    std::string bytes;
    bytes.reserve(sizeof header + rows.size() * sizeof(FileRow) + texts.size());
    vdir::appendPacked(bytes, &header, 1);
    vdir::appendPacked(bytes, rows.data(), rows.size());
    bytes += texts;
    header.checksum = vdir::checksum(summed(bytes));
    std::memcpy(bytes.data(), &header, sizeof header);
    return bytes;
}

std::optional<std::vector<IndexedCardFile>> decodedCards(std::string_view bytes) {
    PackedSource source(bytes);
    Header header{};
    std::vector<FileRow> rows;
    if (!source.take(&header, 1) || header.version != formatVersion || header.checksum != vdir::checksum(summed(bytes))
        || !source.takeList(rows, header.files))
        return std::nullopt;
    const auto texts = textsOf(rows, source.rest());
    if (!texts) return std::nullopt;
    std::vector<IndexedCardFile> files(rows.size());
    std::atomic<bool> whole{true};
    vdir::inParallel(rows.size(), 512, [&](std::size_t i) {
        files[i].signature = rows[i].signature;
        files[i].health = static_cast<vdir::FileHealth>(rows[i].health);
        files[i].cards.resize(rows[i].cards);
        if (!readCards((*texts)[i], files[i].cards)) whole = false;
    });
    if (!whole) return std::nullopt;
    return files;
}

} // namespace vesk::vcard
