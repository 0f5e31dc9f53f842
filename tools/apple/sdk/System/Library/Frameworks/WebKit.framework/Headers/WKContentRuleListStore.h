#pragma once

#import <WebKit/WKFoundation.h>

NS_ASSUME_NONNULL_BEGIN

@class WKContentRuleList;

@interface WKContentRuleListStore : NSObject
- (instancetype)init NS_UNAVAILABLE;
+ (nullable instancetype)defaultStore;
- (void)compileContentRuleListForIdentifier:(NSString*)identifier
                     encodedContentRuleList:(NSString*)rules
                          completionHandler:
                              (void (^)(WKContentRuleList* _Nullable list, NSError* _Nullable error))handler;
@end

NS_ASSUME_NONNULL_END
