#include "VeskPlatform/Apple/AppleScriptMailRunner.hpp"

#import "VeskPlatform/Apple/FoundationValues.hpp"

#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>

namespace vesk {
namespace {

constexpr DescType listType = 'list';
static_assert(listType == typeAEList);

ScriptDescriptor::List items(NSAppleEventDescriptor* list) {
    ScriptDescriptor::List texts;
    for (NSInteger i = 1; i <= list.numberOfItems; ++i)
        texts.push_back(optionalUtf8([list descriptorAtIndex:i].stringValue));
    return texts;
}

ScriptDescriptor scriptDescriptor(NSAppleEventDescriptor* result) {
    if (result.descriptorType == listType) return {items(result)};
    return {optionalUtf8(result.stringValue)};
}

MailScriptFailed scriptFailure(NSDictionary<NSString*, id>* information) {
    id<NSObject> message = information[NSAppleScriptErrorMessage];
    if (![message isKindOfClass:[NSString class]]) return {};
    return {optionalUtf8(static_cast<NSString*>(message))};
}

} // namespace

MailScriptOutcome AppleScriptMailRunner::run(const MailScript& script) {
    NSAppleScript* made = [[NSAppleScript alloc] initWithSource:nsString(script.text)];
    if (made == nil) return MailScriptNotMade{};
    NSDictionary<NSString*, id>* information = nil;
    NSAppleEventDescriptor* result = [made executeAndReturnError:&information];
    if (information != nil) return scriptFailure(information);
    return scriptDescriptor(result);
}

} // namespace vesk
