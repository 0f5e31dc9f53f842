#include "VeskShellCore/ContactsOperations.hpp"

#include "VeskPlatform/ContactStore.hpp"
#include "VeskPlatform/LocaleSettings.hpp"
#include "VeskShellCore/BundleResponse.hpp"
#include "VeskShellCore/ContactLabels.hpp"
#include "VeskShellCore/ContactMatching.hpp"
#include "VeskShellCore/ContactsAccess.hpp"
#include "VeskShellCore/ContactsError.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>

namespace vesk::VeskContactsOperations {
namespace {

using Code = ContactsError::Code;

std::string normalizeOptional(const std::optional<std::string>& text) { return trimmedOrAbsent(text).value_or(""); }

// ---- What is shown of a contact

std::vector<CapabilityContactField> fieldsOf(const std::vector<LabeledValue>& values) {
    std::vector<CapabilityContactField> fields;
    for (const LabeledValue& each : values) fields.push_back({readableLabel(each.label), each.value});
    return fields;
}

CapabilityContactAddress addressPayload(const LabeledPostalAddress& given, const ContactStore& store) {
    const PostalAddress& address = given.address;
    return {.label = readableLabel(given.label),
            .street = trimmedOrAbsent(address.street),
            .city = trimmedOrAbsent(address.city),
            .state = trimmedOrAbsent(address.state),
            .postalCode = trimmedOrAbsent(address.postalCode),
            .country = trimmedOrAbsent(address.country),
            .countryCode = trimmedOrAbsent(address.isoCountryCode),
            .formattedAddress = trimmedOrAbsent(store.mailingText(address))};
}

CapabilityContactEntry contactPayload(const ContactCard& contact, const ContactStore& store) {
    CapabilityContactEntry entry;
    entry.id = contact.identifier;
    entry.name = veskContactDisplayName(contact);
    entry.phones = fieldsOf(contact.phoneNumbers);
    entry.emails = fieldsOf(contact.emailAddresses);
    if (!contact.postalAddresses.empty()) entry.addresses.emplace();
    for (const LabeledPostalAddress& each : contact.postalAddresses)
        entry.addresses->push_back(addressPayload(each, store));
    entry.organization = trimmedOrAbsent(contact.organizationName);
    entry.jobTitle = trimmedOrAbsent(contact.jobTitle);
    entry.department = trimmedOrAbsent(contact.departmentName);
    return entry;
}

void sortByName(std::vector<CapabilityContactEntry>& entries, const std::string& locale) {
    if (entries.size() < 2) return;
    const CaseInsensitiveCollator collator(locale);
    std::ranges::stable_sort(entries, [&](const CapabilityContactEntry& a, const CapabilityContactEntry& b) {
        return collator.compare(a.name, b.name) < 0;
    });
}

// ---- What a request adds to a contact

/// The last of several words is the family name; a single one is the given name.
void applyDisplayName(const std::string& name, ContactCard& contact) {
    std::vector<std::string> pieces = words(name);
    if (pieces.size() < 2) {
        contact.givenName = name;
        return;
    }
    contact.familyName = std::move(pieces.back());
    pieces.pop_back();
    contact.givenName = joined(pieces, " ");
}

void setWhereGiven(std::string& stored, const std::optional<std::string>& given) {
    if (auto text = trimmedOrAbsent(given)) stored = std::move(*text);
}

/// None where neither street, city, postal code nor country is known: a state alone is no address.
std::optional<LabeledPostalAddress> addressValue(const CapabilityContactAddress& given, const TextFolding& folding) {
    PostalAddress address{.street = normalizeOptional(given.street),
                          .city = normalizeOptional(given.city),
                          .state = normalizeOptional(given.state),
                          .postalCode = normalizeOptional(given.postalCode),
                          .country = normalizeOptional(given.country),
                          .isoCountryCode = normalizeOptional(given.countryCode)};
    if (address.street.empty() && address.city.empty() && address.postalCode.empty() && address.country.empty())
        return std::nullopt;
    return LabeledPostalAddress{nativeLabel(given.label, contactLabel::work, folding), std::move(address)};
}

void append(const std::optional<std::vector<CapabilityContactField>>& fields, const char* defaultLabel,
            const TextFolding& folding, std::vector<LabeledValue>& values) {
    if (!fields) return;
    for (const CapabilityContactField& field : *fields)
        if (!isBlank(field.value))
            values.push_back({nativeLabel(field.label, defaultLabel, folding), std::string(trimmed(field.value))});
}

void extend(ContactCard& contact, const CapabilityContactSaveRequest& request, const TextFolding& folding) {
    setWhereGiven(contact.organizationName, request.organization);
    setWhereGiven(contact.jobTitle, request.jobTitle);
    setWhereGiven(contact.departmentName, request.department);
    append(request.phones, contactLabel::mobile, folding, contact.phoneNumbers);
    append(request.emails, contactLabel::work, folding, contact.emailAddresses);
    for (const CapabilityContactAddress& given : request.addresses.value_or(std::vector<CapabilityContactAddress>{}))
        if (auto address = addressValue(given, folding)) contact.postalAddresses.push_back(std::move(*address));
}

} // namespace

Task<CapabilityContactsSearchResponse> searchContacts(Platform& platform, std::string query, const Bundle& bundle) {
    auto response = responseOf<CapabilityContactsSearchResponse>(bundle);
    response.query = trimmed(query);
    if (response.query.empty()) throw ContactsError(Code::argumentInvalid, "Contact search query is required.");
    co_await ensureContactAccess(platform);
    const std::string locale = platform.localeSettings().locale();
    const auto store = platform.openContactStore();
    const TextFolding folding(locale);
    const ContactMatcher matcher(*store, folding, response.query);
    store->forEachContact([&](const ContactCard& contact) {
        if (matcher.contactMatches(contact)) response.contacts.push_back(contactPayload(contact, *store));
    });
    sortByName(response.contacts, locale);
    response.detail =
        response.contacts.empty() ? "No Contacts matched the query." : "Searched the local macOS Contacts database.";
    co_return response;
}

Task<CapabilityContactSaveResponse> saveContact(Platform& platform, CapabilityContactSaveRequest request,
                                                const Bundle& bundle) {
    const std::string name(trimmed(request.name));
    if (name.empty()) throw ContactsError(Code::argumentInvalid, "Contact name is required.");
    co_await ensureContactAccess(platform);
    const auto store = platform.openContactStore();
    const TextFolding folding(platform.localeSettings().locale());
    const auto target = trimmedOrAbsent(request.targetId);
    ContactCard contact;
    if (target)
        contact = store->contact(*target);
    else
        applyDisplayName(name, contact);
    extend(contact, request, folding);
    auto response = responseOf<CapabilityContactSaveResponse>(bundle);
    response.contact = contactPayload(target ? store->update(contact) : store->add(contact), *store);
    response.detail = target ? "Updated the local macOS Contacts entry." : "Saved a new local macOS Contacts entry.";
    co_return response;
}

} // namespace vesk::VeskContactsOperations
