#include "VeskPlatform/Apple/UbiquityCloudAccount.hpp"

#import "VeskPlatform/Apple/FoundationFileItems.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"

#include "VeskPlatform/Apple/ProtectedFilePlaces.hpp"

namespace vesk {

bool UbiquityCloudAccount::hasIdentityToken() { return NSFileManager.defaultManager.ubiquityIdentityToken != nil; }

std::optional<std::string> UbiquityCloudAccount::drivePath() {
    const auto home = optionalUtf8(NSFileManager.defaultManager.homeDirectoryForCurrentUser.path);
    if (!home) return std::nullopt;
    return *home + "/" + cloudDriveInHome;
}

std::optional<std::string> UbiquityCloudAccount::containerPath(const std::optional<std::string>& identifier) {
    // What names no container cannot be reached; nil would stand for the default one.
    NSString* name = identifier ? namedPath(*identifier) : nil;
    if (identifier && name == nil) return std::nullopt;
    return optionalUtf8([NSFileManager.defaultManager URLForUbiquityContainerIdentifier:name].path);
}

} // namespace vesk
