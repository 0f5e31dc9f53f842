#import "VeskPlatform/Apple/FoundationUserDefaults.hpp"

#import "VeskPlatform/Apple/FoundationValues.hpp"

namespace vesk {

std::optional<std::string> FoundationUserDefaults::string(const std::string& key) {
    @autoreleasepool {
        return optionalUtf8([NSUserDefaults.standardUserDefaults stringForKey:nsString(key)]);
    }
}

std::optional<std::string> FoundationUserDefaults::data(const std::string& key) {
    @autoreleasepool {
        NSData* data = [NSUserDefaults.standardUserDefaults dataForKey:nsString(key)];
        if (data == nil) return std::nullopt;
        return bytes(known(data));
    }
}

void FoundationUserDefaults::setString(const std::string& key, std::string_view text) {
    @autoreleasepool {
        [NSUserDefaults.standardUserDefaults setObject:nsString(text) forKey:nsString(key)];
    }
}

void FoundationUserDefaults::setData(const std::string& key, std::string_view bytes) {
    @autoreleasepool {
        [NSUserDefaults.standardUserDefaults setObject:nsData(bytes) forKey:nsString(key)];
    }
}

void FoundationUserDefaults::remove(const std::string& key) {
    @autoreleasepool {
        [NSUserDefaults.standardUserDefaults removeObjectForKey:nsString(key)];
    }
}

} // namespace vesk
