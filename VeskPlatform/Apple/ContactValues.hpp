#pragma once

#import <Contacts/Contacts.h>

#include "VeskPlatform/ContactStore.hpp"

NS_ASSUME_NONNULL_BEGIN

namespace vesk {

/// What is fetched of a contact, and nothing else of it may be read.
NSArray<id<CNKeyDescriptor>>* contactKeys();
/// The value of a contact that has all of `contactKeys`.
ContactCard contactCard(CNContact* contact);
CNPostalAddress* nativePostalAddress(const PostalAddress& address);

void setNames(const ContactCard& card, CNMutableContact* contact);
/// Sets the employment that differs.
void setEmployment(const ContactCard& card, CNMutableContact* contact);
/// Puts the card's values that come after as many as the contact has behind the contact's own.
void appendValues(const ContactCard& card, CNMutableContact* contact);

} // namespace vesk

NS_ASSUME_NONNULL_END
