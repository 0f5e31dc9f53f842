#import "VeskPlatform/Apple/ProcessInfoEnvironment.hpp"

#import "VeskPlatform/Apple/FoundationValues.hpp"

namespace vesk {

std::optional<std::string> ProcessInfoEnvironment::value(const std::string& name) {
    @autoreleasepool {
        return optionalUtf8(NSProcessInfo.processInfo.environment[nsString(name)]);
    }
}

std::string ProcessInfoEnvironment::homeDirectory() {
    @autoreleasepool {
        return optionalUtf8(NSFileManager.defaultManager.homeDirectoryForCurrentUser.path).value_or("");
    }
}

std::optional<std::string> ProcessInfoEnvironment::argumentZero() {
    @autoreleasepool {
        return optionalUtf8(NSProcessInfo.processInfo.arguments.firstObject);
    }
}

} // namespace vesk
