#pragma once

#import <WebKit/WebKit.h>

#include <exception>
#include <functional>
#include <memory>

NS_ASSUME_NONNULL_BEGIN

namespace vesk {

/// Rules that keep a page from the network and from files, as the engine has them once it compiled them: whatever a
/// document refers to is blocked but for what it carries itself. Used on the main thread.
struct WebKitRules {
    /// None before they are compiled.
    WKContentRuleList* _Nullable list = nil;
};

/// Has the rules compiled. `done` is called later and once, with the failure or with null. Throws ErrorRecord where
/// there is no place for them.
void compileRules(const std::shared_ptr<WebKitRules>& rules, std::function<void(std::exception_ptr)> done);

} // namespace vesk

NS_ASSUME_NONNULL_END
