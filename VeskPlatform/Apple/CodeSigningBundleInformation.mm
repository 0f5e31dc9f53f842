#include "VeskPlatform/Apple/CodeSigningBundleInformation.hpp"

#import "VeskPlatform/Apple/CoreFoundationReference.hpp"
#import "VeskPlatform/Apple/FoundationFileItems.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"
#import "VeskPlatform/Apple/PropertyListValues.hpp"

#include "VeskPlatform/Portable/PropertyListJson.hpp"

#import <Security/Security.h>

#include <utility>

namespace vesk {
namespace {

constexpr SecCSFlags noFlags = 0, signingInformation = 2;
static_assert(noFlags == kSecCSDefaultFlags && signingInformation == kSecCSSigningInformation);

/// Empty where it is no dictionary that can be read.
JsonValue::Object jsonObject(id<NSObject> _Nullable list) {
    JsonValue json = jsonOf(propertyListValue(list).value_or(PropertyListValue()));
    auto* object = std::get_if<JsonValue::Object>(&json.value);
    return object == nullptr ? JsonValue::Object{} : std::move(*object);
}

/// The main bundle is asked for as such: a bare program carries its dictionary in itself and not in its folder.
NSBundle* _Nullable openBundle(NSString* path) {
    NSBundle* main = NSBundle.mainBundle;
    return [main.bundlePath isEqualToString:path] ? main : [NSBundle bundleWithPath:path];
}

CFOwned<SecStaticCodeRef> staticCode(NSURL* url) {
    CFOwned<SecStaticCodeRef> code;
    if (SecStaticCodeCreateWithPath((__bridge CFURLRef)url, noFlags, code.out()) != errSecSuccess) return {};
    return code;
}

CFOwned<CFDictionaryRef> signingInformationOf(SecStaticCodeRef code) {
    CFOwned<CFDictionaryRef> information;
    if (SecCodeCopySigningInformation(code, signingInformation, information.out()) != errSecSuccess) return {};
    return information;
}

} // namespace

JsonValue::Object CodeSigningBundleInformation::informationDictionary(const Bundle& bundle) {
    NSString* path = namedPath(bundle.path);
    return path == nil ? JsonValue::Object{} : jsonObject(openBundle(path).infoDictionary);
}

JsonValue::Object CodeSigningBundleInformation::entitlements(const std::string& path) {
    NSString* name = namedPath(path);
    if (name == nil) return {};
    const CFOwned<SecStaticCodeRef> code = staticCode([NSURL fileURLWithPath:name]);
    if (!code) return {};
    const CFOwned<CFDictionaryRef> information = signingInformationOf(code.get());
    if (!information) return {};
    NSDictionary<NSString*, id>* told = (__bridge NSDictionary*)information.get();
    return jsonObject(told[(__bridge NSString*)kSecCodeInfoEntitlementsDict]);
}

} // namespace vesk
