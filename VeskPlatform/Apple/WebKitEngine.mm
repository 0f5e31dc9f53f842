#include "VeskPlatform/Apple/WebKitEngine.hpp"

#include "VeskPlatform/Apple/WebKitRules.hpp"
#include "VeskPlatform/Apple/WebKitView.hpp"
#include "VeskSupport/CallbackAnswer.hpp"

#import <AppKit/AppKit.h>

#include <exception>
#include <functional>
#include <utility>

namespace vesk {

namespace {

/// The window and print systems are set up when the application is first asked for.
std::unique_ptr<WebView> newView(double width, double height, const WebKitRules& rules) {
    (void)NSApplication.sharedApplication;
    return std::make_unique<WebKitView>(width, height, rules.list);
}

bool areCompiled(const WebKitRules& rules) { return rules.list != nil; }

Task<void> haveRules(std::shared_ptr<WebKitRules> rules) {
    std::function<void(std::function<void(std::exception_ptr)>)> begin =
        [rules](std::function<void(std::exception_ptr)> answer) { compileRules(rules, std::move(answer)); };
    auto compiling = answerOfCallback<std::exception_ptr>(std::move(begin));
    const std::exception_ptr failure = co_await std::move(compiling);
    if (failure) std::rethrow_exception(failure);
}

} // namespace

WebKitEngine::WebKitEngine() : rules_(std::make_shared<WebKitRules>()) {}

Task<std::unique_ptr<WebView>> WebKitEngine::makeView(double width, double height) {
    const std::shared_ptr<WebKitRules> rules = rules_;
    if (!areCompiled(*rules)) {
        auto compiling = haveRules(rules);
        co_await std::move(compiling);
    }
    co_return newView(width, height, *rules);
}

} // namespace vesk
