#include "VeskPlatform/Apple/WebKitRules.hpp"

#include "VeskPlatform/Apple/FoundationErrors.hpp"

#import <Foundation/Foundation.h>

#include <utility>

namespace vesk {

namespace {

/// Everything is blocked; then the rules are taken back for an empty page and for what lies in the document. A pattern
/// knows no alternatives, so that each scheme has its own rule.
NSString* const encodedRules = @"["
                                "{\"trigger\":{\"url-filter\":\".*\"},\"action\":{\"type\":\"block\"}},"
                                "{\"trigger\":{\"url-filter\":\"^about:\"},"
                                "\"action\":{\"type\":\"ignore-previous-rules\"}},"
                                "{\"trigger\":{\"url-filter\":\"^data:\"},"
                                "\"action\":{\"type\":\"ignore-previous-rules\"}}"
                                "]";

} // namespace

void compileRules(const std::shared_ptr<WebKitRules>& rules, std::function<void(std::exception_ptr)> done) {
    WKContentRuleListStore* store = WKContentRuleListStore.defaultStore;
    if (store == nil) throwError(nil);
    const std::shared_ptr<WebKitRules> compiled = rules;
    const auto take = ^(WKContentRuleList* _Nullable list, NSError* _Nullable error) {
      compiled->list = list;
      done(list != nil ? nullptr : std::make_exception_ptr(errorRecord(error)));
    };
    [store compileContentRuleListForIdentifier:@"app.veskhq.document"
                        encodedContentRuleList:encodedRules
                             completionHandler:take];
}

} // namespace vesk
