#import "VeskPlatform/Apple/FoundationLocaleSettings.hpp"

#import "VeskPlatform/Apple/FoundationValues.hpp"

namespace vesk {

std::string FoundationLocaleSettings::timeZone() {
    @autoreleasepool {
        [NSTimeZone resetSystemTimeZone]; // else the zone of the process's start
        return utf8(NSTimeZone.systemTimeZone.name);
    }
}

std::string FoundationLocaleSettings::locale() {
    @autoreleasepool {
        return utf8(NSLocale.autoupdatingCurrentLocale.localeIdentifier);
    }
}

} // namespace vesk
