#pragma once

#include "VeskPlatform/ContactStore.hpp"
#include "VeskSupport/Instant.hpp"

#include <string>
#include <string_view>

namespace vesk::vcard {

/// The text of one whole card with the employment of `wanted` that differs from that of `base` in its place, and the
/// phones, e-mails and addresses that `wanted` has behind those of `base` behind the last of their kind. REV is set
/// where the card has one. Everything else stays byte for byte; what is written follows the rules of the card's own
/// version and has its line ends. Blank values are left out. With nothing changed, the same bytes.
std::string editedCardText(std::string_view card, const ContactCard& base, const ContactCard& wanted, Instant now);

/// A card of its own (vCard 3.0, CR LF) that reads back as `contact`.
std::string newCardText(const ContactCard& contact, const std::string& uid, Instant now);

} // namespace vesk::vcard
