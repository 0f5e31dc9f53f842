#pragma once

#import <WebKit/WKFoundation.h>

NS_ASSUME_NONNULL_BEGIN

@class WKContentRuleList;

@interface WKUserContentController : NSObject <NSSecureCoding>
- (void)addContentRuleList:(WKContentRuleList*)list API_AVAILABLE(macos(10.13));
@end

NS_ASSUME_NONNULL_END
