#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

/// The labels that every address book knows, as stored; any other text is a label of the user's own.
namespace contactLabel {
inline constexpr const char* iPhone = "iPhone";
inline constexpr const char* mobile = "_$!<Mobile>!$_";
inline constexpr const char* main = "_$!<Main>!$_";
inline constexpr const char* home = "_$!<Home>!$_";
inline constexpr const char* work = "_$!<Work>!$_";
inline constexpr const char* other = "_$!<Other>!$_";
} // namespace contactLabel

/// A phone number or an e-mail address.
struct LabeledValue {
    std::optional<std::string> label;
    std::string value;

    bool operator==(const LabeledValue&) const = default;
};

/// A part that is not known is empty.
struct PostalAddress {
    std::string street, city, state, postalCode, country;
    /// Two letters (ISO 3166-1), as stored.
    std::string isoCountryCode;
    /// Parts within the city and around it, where the store has them: some countries write them on a letter.
    std::string subLocality{}, subAdministrativeArea{};

    bool operator==(const PostalAddress&) const = default;
};

struct LabeledPostalAddress {
    std::optional<std::string> label;
    PostalAddress address;

    bool operator==(const LabeledPostalAddress&) const = default;
};

/// What is read of a contact; texts as stored, empty where there is none. Notes are not among it.
struct ContactCard {
    /// Empty for one that is not stored yet.
    std::string identifier;
    std::string givenName, middleName, familyName, nickname;
    std::string organizationName, jobTitle, departmentName;
    /// In stored order, each of them.
    std::vector<LabeledValue> phoneNumbers;
    std::vector<LabeledValue> emailAddresses;
    std::vector<LabeledPostalAddress> postalAddresses;

    bool operator==(const ContactCard&) const = default;
};

/// The user's address books, all as one. Called on the main executor, one call at a time. A store that does not exist
/// yet is an empty one. Failures are ErrorRecords of the platform; a failed write leaves the store as it was.
class ContactStore {
public:
    virtual ~ContactStore() = default;

    /// Shows every contact once, in the store's order; each only for the time of the call.
    virtual void forEachContact(const std::function<void(const ContactCard&)>& visit) = 0;
    /// Fails where no contact has that identifier.
    virtual ContactCard contact(const std::string& identifier) = 0;
    /// Stores a new contact in the default book; returns it as it now stands.
    virtual ContactCard add(const ContactCard& card) = 0;
    /// Stores a contact that the store gave, with other employment and with values behind those that it had. Nothing
    /// else of it changes. Returns it as it now stands.
    virtual ContactCard update(const ContactCard& card) = 0;
    /// An address as it stands on a letter, a line each for street, city and country; empty lines are left out.
    virtual std::string mailingText(const PostalAddress& address) const = 0;
};

} // namespace vesk
