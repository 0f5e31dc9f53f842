#import "VeskPlatform/Apple/ApplicationBundle.hpp"

#import <Foundation/Foundation.h>

#import "VeskPlatform/Apple/FoundationValues.hpp"

#include "VeskPlatform/Portable/ExecutableBundle.hpp"

namespace vesk {
namespace {

Bundle bundleOf(NSBundle* _Nonnull bundle) {
    return {.path = utf8(bundle.bundlePath),
            .executablePath = optionalUtf8(bundle.executablePath),
            .resourcesPath = optionalUtf8(bundle.resourcePath)};
}

} // namespace

Bundle runningBundle() {
    @autoreleasepool {
        Bundle bundle = bundleOf(NSBundle.mainBundle);
        if (bundle.path.ends_with(".app") || !bundle.executablePath) return bundle;
        Bundle around = bundleOfExecutable(*bundle.executablePath);
        return around.resourcesPath ? around : bundle;
    }
}

} // namespace vesk
