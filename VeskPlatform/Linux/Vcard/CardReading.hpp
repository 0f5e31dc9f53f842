#pragma once

#include "VeskPlatform/ContactStore.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace vesk::vcard {

struct ReadCard {
    /// The first UID of the card, trimmed; none where it has none.
    std::optional<std::string> uid;
    /// Whether the card is of a list of people and no contact (KIND, RFC 6350, section 6.1.4, and what phones write).
    bool isGroup = false;
    /// Its identifier is left empty.
    ContactCard contact;
};

/// The contact that one whole card (vCard 2.1, 3.0, 4.0; any line ends) tells of; none where the bytes hold no whole
/// card. Bytes that are not UTF-8 are read as U+FFFD. Notes and photos are not looked at. Never throws but for want of
/// memory.
std::optional<ReadCard> readCard(std::string_view card);

} // namespace vesk::vcard
