#pragma once

#include "VeskPlatform/ContactStore.hpp"

#include <string>

namespace vesk::vcard {

/// An address as it stands on a letter: street, city line and country, a line each, empty ones left out. The city line
/// is in the order that the Universal Postal Union's addressing guides give for the address's country code (ISO 3166-1,
/// two letters, case aside); with no code or an unknown one, for `currentCountry`; else postal code first.
std::string mailingText(const PostalAddress& address, const std::string& currentCountry);

} // namespace vesk::vcard
