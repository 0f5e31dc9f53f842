#pragma once

#import <Contacts/Contacts.h>

#include "VeskPlatform/ContactStore.hpp"

NS_ASSUME_NONNULL_BEGIN

namespace vesk {

/// The user's contacts through the Contacts framework, unified, in a store of its own.
class ContactsContactStore : public ContactStore {
public:
    void forEachContact(const std::function<void(const ContactCard&)>& visit) override;
    ContactCard contact(const std::string& identifier) override;
    ContactCard add(const ContactCard& card) override;
    ContactCard update(const ContactCard& card) override;
    std::string mailingText(const PostalAddress& address) const override;

private:
    CNContact* loaded(const std::string& identifier);
    void execute(CNSaveRequest* request);

    CNContactStore* store_ = [[CNContactStore alloc] init];
    /// The contacts that callers were given one by one, as they were then: what comes back is told by the difference.
    NSMutableDictionary<NSString*, CNContact*>* given_ = [NSMutableDictionary dictionary];
};

} // namespace vesk

NS_ASSUME_NONNULL_END
