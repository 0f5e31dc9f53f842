#include "VeskShellCore/ContactMatching.hpp"

#include "VeskSupport/Text.hpp"

#include <algorithm>

namespace vesk::VeskContactsOperations {

std::string veskContactDisplayName(const ContactCard& contact) {
    std::vector<std::string> names;
    for (const std::string* name : {&contact.givenName, &contact.middleName, &contact.familyName})
        if (!isBlank(*name)) names.emplace_back(trimmed(*name));
    if (!names.empty()) return joined(names, " ");
    for (const std::string* name : {&contact.nickname, &contact.organizationName})
        if (!isBlank(*name)) return std::string(trimmed(*name));
    return "Unnamed Contact";
}

ContactMatcher::ContactMatcher(const ContactStore& store, const TextFolding& folding, const std::string& query)
    : store_(store), folding_(folding), query_(folding.folded(query)), digits_(digitsOnly(query)) {}

bool ContactMatcher::isIn(const std::string& text) const {
    return !text.empty() && folding_.folded(text).find(query_) != std::string::npos;
}

bool ContactMatcher::isInNumber(const std::string& number) const {
    return isIn(number) || (!digits_.empty() && digitsOnly(number).find(digits_) != std::string::npos);
}

bool ContactMatcher::contactMatches(const ContactCard& contact) const {
    if (query_.empty()) return false;
    if (isIn(veskContactDisplayName(contact)) || isIn(contact.nickname) || isIn(contact.organizationName)
        || isIn(contact.jobTitle) || isIn(contact.departmentName))
        return true;
    return std::ranges::any_of(contact.emailAddresses, [&](const auto& email) { return isIn(email.value); })
           || std::ranges::any_of(contact.phoneNumbers, [&](const auto& phone) { return isInNumber(phone.value); })
           || std::ranges::any_of(contact.postalAddresses, [&](const LabeledPostalAddress& each) {
                  return isIn(store_.mailingText(each.address));
              });
}

} // namespace vesk::VeskContactsOperations
