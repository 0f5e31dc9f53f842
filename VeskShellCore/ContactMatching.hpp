#pragma once

#include "VeskPlatform/ContactStore.hpp"
#include "VeskSupport/TextFolding.hpp"

#include <string>

namespace vesk::VeskContactsOperations {

/// What people call a contact: its names, else its nickname, else its organization, else "Unnamed Contact".
std::string veskContactDisplayName(const ContactCard& contact);

/// Finds a text in what is known of a contact, case and diacritics aside, and its digits in phone numbers whatever
/// stands between them.
class ContactMatcher {
public:
    ContactMatcher(const ContactStore& store, const TextFolding& folding, const std::string& query);

    bool contactMatches(const ContactCard& contact) const;

private:
    bool isIn(const std::string& text) const;
    bool isInNumber(const std::string& number) const;

    const ContactStore& store_;
    const TextFolding& folding_;
    std::string query_;
    std::string digits_;
};

} // namespace vesk::VeskContactsOperations
