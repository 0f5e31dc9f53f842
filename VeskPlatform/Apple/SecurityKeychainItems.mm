#import "VeskPlatform/Apple/SecurityKeychainItems.hpp"

#import <Foundation/Foundation.h>
#import <Security/Security.h>

#import "VeskPlatform/Apple/CoreFoundationReference.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"

#include "VeskPlatform/Portable/KeychainNames.hpp"

NS_ASSUME_NONNULL_BEGIN

namespace vesk {
namespace {

static_assert(KeychainStatus::success == errSecSuccess);
static_assert(KeychainStatus::itemNotFound == errSecItemNotFound);
static_assert(KeychainStatus::duplicateItem == errSecDuplicateItem);
static_assert(KeychainStatus::locked == errSecInteractionNotAllowed);
static_assert(KeychainStatus::denied == errSecAuthFailed);
static_assert(KeychainStatus::unavailable == errSecNotAvailable);
static_assert(KeychainStatus::decode == errSecDecode);
static_assert(KeychainStatus::failed == errSecIO);
static_assert(KeychainStatus::parameter == errSecParam);

using Query = NSMutableDictionary<NSString*, id>;

/// The name of an attribute as a key of a dictionary.
NSString* key(CFStringRef name) { return (__bridge NSString*)name; }

Query* serviceQuery(const std::string& service) {
    Query* query = [Query dictionaryWithCapacity:5];
    query[key(kSecClass)] = key(kSecClassGenericPassword);
    query[key(kSecAttrService)] = nsString(service);
    return query;
}

Query* itemQuery(const std::string& service, const std::string& account) {
    Query* query = serviceQuery(service);
    query[key(kSecAttrAccount)] = nsString(account);
    return query;
}

/// One item of which a part is to be returned.
Query* searchQuery(const std::string& service, const std::string& account, CFStringRef returned) {
    Query* query = itemQuery(service, account);
    query[key(returned)] = @YES;
    query[key(kSecMatchLimit)] = key(kSecMatchLimitOne);
    return query;
}

CFDictionaryRef plain(Query* query) { return (__bridge CFDictionaryRef)query; }

} // namespace

std::int32_t SecurityKeychainItems::update(const std::string& service, const std::string& account,
                                           std::string_view bytes) {
    if (!isKeychainName(service) || !isKeychainName(account)) return KeychainStatus::parameter;
    @autoreleasepool {
        Query* changes = [Query dictionaryWithCapacity:1];
        changes[key(kSecValueData)] = nsData(bytes);
        return SecItemUpdate(plain(itemQuery(service, account)), plain(changes));
    }
}

std::int32_t SecurityKeychainItems::add(const std::string& service, const std::string& account,
                                        std::string_view bytes) {
    if (!isKeychainName(service) || !isKeychainName(account)) return KeychainStatus::parameter;
    @autoreleasepool {
        Query* item = itemQuery(service, account);
        item[key(kSecValueData)] = nsData(bytes);
        return SecItemAdd(plain(item), nullptr);
    }
}

KeychainItems::Copied SecurityKeychainItems::copy(const std::string& service, const std::string& account) {
    if (!isKeychainName(service) || !isKeychainName(account)) return {KeychainStatus::parameter, std::nullopt};
    @autoreleasepool {
        CFOwned<CFTypeRef> found;
        const OSStatus status = SecItemCopyMatching(plain(searchQuery(service, account, kSecReturnData)), found.out());
        if (status != errSecSuccess || !found || CFGetTypeID(found.get()) != CFDataGetTypeID())
            return {status, std::nullopt};
        return {status, vesk::bytes((__bridge NSData*)found.get())};
    }
}

std::int32_t SecurityKeychainItems::find(const std::string& service, const std::string& account) {
    if (!isKeychainName(service) || !isKeychainName(account)) return KeychainStatus::parameter;
    @autoreleasepool {
        CFOwned<CFTypeRef> attributes;
        return SecItemCopyMatching(plain(searchQuery(service, account, kSecReturnAttributes)), attributes.out());
    }
}

std::int32_t SecurityKeychainItems::remove(const std::string& service, const std::string& account) {
    if (!isKeychainName(service) || !isKeychainName(account)) return KeychainStatus::parameter;
    @autoreleasepool {
        return SecItemDelete(plain(itemQuery(service, account)));
    }
}

std::int32_t SecurityKeychainItems::removeAll(const std::string& service) {
    if (!isKeychainName(service)) return KeychainStatus::parameter;
    @autoreleasepool {
        return SecItemDelete(plain(serviceQuery(service)));
    }
}

} // namespace vesk

NS_ASSUME_NONNULL_END
