#import "VeskPlatform/Apple/ContactValues.hpp"

#import "VeskPlatform/Apple/ContactLabelNames.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"
#include "VeskSupport/ErrorRecord.hpp"

namespace vesk {
namespace {

std::vector<LabeledValue> phoneNumbersOf(CNContact* contact) {
    std::vector<LabeledValue> values;
    for (CNLabeledValue<CNPhoneNumber*>* each in contact.phoneNumbers)
        values.push_back({.label = storedLabel(each.label), .value = utf8(each.value.stringValue)});
    return values;
}

std::vector<LabeledValue> emailAddressesOf(CNContact* contact) {
    std::vector<LabeledValue> values;
    for (CNLabeledValue<NSString*>* each in contact.emailAddresses)
        values.push_back({.label = storedLabel(each.label), .value = utf8(each.value)});
    return values;
}

PostalAddress postalAddress(CNPostalAddress* address) {
    return {.street = utf8(address.street),
            .city = utf8(address.city),
            .state = utf8(address.state),
            .postalCode = utf8(address.postalCode),
            .country = utf8(address.country),
            .isoCountryCode = utf8(address.ISOCountryCode),
            .subLocality = utf8(address.subLocality),
            .subAdministrativeArea = utf8(address.subAdministrativeArea)};
}

std::vector<LabeledPostalAddress> postalAddressesOf(CNContact* contact) {
    std::vector<LabeledPostalAddress> values;
    for (CNLabeledValue<CNPostalAddress*>* each in contact.postalAddresses)
        values.push_back({.label = storedLabel(each.label), .address = postalAddress(each.value)});
    return values;
}

CNLabeledValue<CNPhoneNumber*>* nativePhoneNumber(const LabeledValue& number) {
    CNPhoneNumber* native = [[CNPhoneNumber alloc] initWithStringValue:nsString(number.value)];
    if (native == nil) throw ErrorRecord("ContactsContactStore", 400, "The phone number cannot be stored.");
    return [[CNLabeledValue alloc] initWithLabel:nativeLabel(number.label) value:known(native)];
}

CNLabeledValue<NSString*>* nativeEmailAddress(const LabeledValue& address) {
    return [[CNLabeledValue alloc] initWithLabel:nativeLabel(address.label) value:nsString(address.value)];
}

CNLabeledValue<CNPostalAddress*>* nativeLabeledAddress(const LabeledPostalAddress& given) {
    return [[CNLabeledValue alloc] initWithLabel:nativeLabel(given.label) value:nativePostalAddress(given.address)];
}

/// `existing` followed by those of `wanted` that come after as many.
template <class Array, class Value, class Convert>
Array extended(Array existing, const std::vector<Value>& wanted, Convert native) {
    for (std::size_t i = existing.count; i < wanted.size(); ++i)
        existing = [existing arrayByAddingObject:native(wanted[i])];
    return existing;
}

} // namespace

NSArray<id<CNKeyDescriptor>>* contactKeys() {
    return @[
        CNContactIdentifierKey, CNContactGivenNameKey, CNContactMiddleNameKey, CNContactFamilyNameKey,
        CNContactNicknameKey, CNContactOrganizationNameKey, CNContactJobTitleKey, CNContactDepartmentNameKey,
        CNContactPhoneNumbersKey, CNContactEmailAddressesKey, CNContactPostalAddressesKey
    ];
}

ContactCard contactCard(CNContact* contact) {
    return {.identifier = utf8(contact.identifier),
            .givenName = utf8(contact.givenName),
            .middleName = utf8(contact.middleName),
            .familyName = utf8(contact.familyName),
            .nickname = utf8(contact.nickname),
            .organizationName = utf8(contact.organizationName),
            .jobTitle = utf8(contact.jobTitle),
            .departmentName = utf8(contact.departmentName),
            .phoneNumbers = phoneNumbersOf(contact),
            .emailAddresses = emailAddressesOf(contact),
            .postalAddresses = postalAddressesOf(contact)};
}

CNPostalAddress* nativePostalAddress(const PostalAddress& address) {
    CNMutablePostalAddress* native = [[CNMutablePostalAddress alloc] init];
    native.street = nsString(address.street);
    native.city = nsString(address.city);
    native.state = nsString(address.state);
    native.postalCode = nsString(address.postalCode);
    native.country = nsString(address.country);
    native.ISOCountryCode = nsString(address.isoCountryCode);
    native.subLocality = nsString(address.subLocality);
    native.subAdministrativeArea = nsString(address.subAdministrativeArea);
    return native;
}

void setNames(const ContactCard& card, CNMutableContact* contact) {
    contact.givenName = nsString(card.givenName);
    contact.middleName = nsString(card.middleName);
    contact.familyName = nsString(card.familyName);
    contact.nickname = nsString(card.nickname);
}

void setEmployment(const ContactCard& card, CNMutableContact* contact) {
    if (card.organizationName != utf8(contact.organizationName))
        contact.organizationName = nsString(card.organizationName);
    if (card.jobTitle != utf8(contact.jobTitle)) contact.jobTitle = nsString(card.jobTitle);
    if (card.departmentName != utf8(contact.departmentName)) contact.departmentName = nsString(card.departmentName);
}

void appendValues(const ContactCard& card, CNMutableContact* contact) {
    contact.phoneNumbers = extended(contact.phoneNumbers, card.phoneNumbers, nativePhoneNumber);
    contact.emailAddresses = extended(contact.emailAddresses, card.emailAddresses, nativeEmailAddress);
    contact.postalAddresses = extended(contact.postalAddresses, card.postalAddresses, nativeLabeledAddress);
}

} // namespace vesk
