// vCard files: scanned, read, edited. An edit that changes nothing gives the same bytes; what an edit adds is read back
// behind what was there.

#include "VeskPlatform/Linux/Vcard/CardEditing.hpp"
#include "VeskPlatform/Linux/Vcard/CardReading.hpp"
#include "VeskPlatform/Linux/Vcard/CardScanner.hpp"
#include "VeskPlatform/Linux/Vcard/CardWriting.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using namespace vesk;
using namespace vesk::vcard;

constexpr Instant now{};

void require(bool holds) {
    if (!holds) std::abort();
}

/// Adds one of each kind, with a text out of the card itself.
ContactCard extended(const ContactCard& base, const std::string& text) {
    ContactCard wanted = base;
    wanted.departmentName = text;
    wanted.jobTitle = "x" + text;
    wanted.phoneNumbers.push_back({"own" + text, text + "1"});
    wanted.emailAddresses.push_back({contactLabel::iPhone, "mailto:" + text});
    wanted.postalAddresses.push_back({contactLabel::home, {text, "x", "", text, "", text}});
    return wanted;
}

void editCard(std::string_view bytes) {
    const std::optional<ReadCard> read = readCard(bytes);
    require(read.has_value());
    require(editedCardText(bytes, read->contact, read->contact, now) == bytes);
    const std::string text = writableText(bytes.substr(bytes.size() / 3, bytes.size() / 3));
    const ContactCard wanted = extended(read->contact, text);
    const std::string edited = editedCardText(bytes, read->contact, wanted, now);
    const ScannedCards scanned = scanCards(edited);
    require(scanned.cards.size() == 1 && scanned.cards[0] == CardRange{0, edited.size()});
    const std::optional<ReadCard> after = readCard(edited);
    require(after && after->uid == read->uid && after->contact == wanted);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const CardRange& card : scanCards(bytes).cards) editCard(card.of(bytes));
    readCard(bytes);
    return 0;
}
