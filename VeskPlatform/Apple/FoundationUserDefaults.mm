#import "VeskPlatform/Apple/FoundationUserDefaults.hpp"

#import "VeskPlatform/Apple/FoundationValues.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <type_traits>

namespace vesk {
namespace {

/// What `body` returns; nothing where a text is no UTF-8, which the system's defaults have no place for.
template <class Body> std::invoke_result_t<Body, NSUserDefaults*> withDefaults(const Body& body) {
    @autoreleasepool {
        try {
            return body(NSUserDefaults.standardUserDefaults);
        } catch (const ErrorRecord&) {
            return {};
        }
    }
}

/// Changes the defaults and waits until the change is with the system: a program that ends at once could lose it.
template <class Body> void change(const Body& body) {
    withDefaults([&](NSUserDefaults* defaults) {
        body(defaults);
        return CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication);
    });
}

} // namespace

std::optional<std::string> FoundationUserDefaults::string(const std::string& key) {
    return withDefaults([&](NSUserDefaults* defaults) { return optionalUtf8([defaults stringForKey:nsString(key)]); });
}

std::optional<std::string> FoundationUserDefaults::data(const std::string& key) {
    return withDefaults([&](NSUserDefaults* defaults) {
        NSData* data = [defaults dataForKey:nsString(key)];
        return data == nil ? std::nullopt : std::optional(bytes(known(data)));
    });
}

void FoundationUserDefaults::setString(const std::string& key, std::string_view text) {
    change([&](NSUserDefaults* defaults) { [defaults setObject:nsString(text) forKey:nsString(key)]; });
}

void FoundationUserDefaults::setData(const std::string& key, std::string_view bytes) {
    change([&](NSUserDefaults* defaults) { [defaults setObject:nsData(bytes) forKey:nsString(key)]; });
}

void FoundationUserDefaults::remove(const std::string& key) {
    change([&](NSUserDefaults* defaults) { [defaults removeObjectForKey:nsString(key)]; });
}

} // namespace vesk
