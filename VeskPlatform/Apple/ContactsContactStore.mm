#import "VeskPlatform/Apple/ContactsContactStore.hpp"

#import "VeskPlatform/Apple/ContactValues.hpp"
#import "VeskPlatform/Apple/FoundationErrors.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"

#include <exception>

namespace vesk {

static_assert(CNPostalAddressFormatterStyleMailingAddress == 0);

void ContactsContactStore::forEachContact(const std::function<void(const ContactCard&)>& visit) {
    CNContactFetchRequest* request = [[CNContactFetchRequest alloc] initWithKeysToFetch:contactKeys()];
    request.unifyResults = YES;
    const auto* shown = &visit;         // the block is called only within this function
    __block std::exception_ptr failure; // no C++ exception may pass through the framework's own frames
    const auto show = ^(CNContact* contact, BOOL* stop) {
      @autoreleasepool {
          try {
              (*shown)(contactCard(contact));
          } catch (...) {
              failure = std::current_exception();
              *stop = YES;
          }
      }
    };
    NSError* error = nil;
    const BOOL isWhole = [store_ enumerateContactsWithFetchRequest:request error:&error usingBlock:show];
    if (failure) std::rethrow_exception(failure);
    if (!isWhole) throwError(error);
}

ContactCard ContactsContactStore::contact(const std::string& identifier) {
    CNContact* found = loaded(identifier);
    given_[found.identifier] = found; // a linked contact may be asked for by another identifier than its own
    return contactCard(found);
}

ContactCard ContactsContactStore::add(const ContactCard& card) {
    CNMutableContact* made = [[CNMutableContact alloc] init];
    setNames(card, made);
    setEmployment(card, made);
    appendValues(card, made);
    CNSaveRequest* request = [[CNSaveRequest alloc] init];
    [request addContact:made toContainerWithIdentifier:nil];
    execute(request);
    return contactCard(made);
}

ContactCard ContactsContactStore::update(const ContactCard& card) {
    NSString* identifier = nsString(card.identifier);
    CNContact* known = given_[identifier];
    CNMutableContact* changed = [(known != nil ? known : loaded(card.identifier)) mutableCopy];
    setEmployment(card, changed);
    appendValues(card, changed);
    CNSaveRequest* request = [[CNSaveRequest alloc] init];
    [request updateContact:changed];
    execute(request);
    given_[identifier] = changed;
    return contactCard(changed);
}

std::string ContactsContactStore::mailingText(const PostalAddress& address) const {
    return utf8([CNPostalAddressFormatter stringFromPostalAddress:nativePostalAddress(address)
                                                            style:CNPostalAddressFormatterStyleMailingAddress]);
}

CNContact* ContactsContactStore::loaded(const std::string& identifier) {
    NSError* error = nil;
    CNContact* found = [store_ unifiedContactWithIdentifier:nsString(identifier)
                                                keysToFetch:contactKeys()
                                                      error:&error];
    if (found == nil) throwError(error);
    return found;
}

void ContactsContactStore::execute(CNSaveRequest* request) {
    NSError* error = nil;
    if (![store_ executeSaveRequest:request error:&error]) throwError(error);
}

} // namespace vesk
