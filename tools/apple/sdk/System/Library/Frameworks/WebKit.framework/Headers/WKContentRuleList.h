#pragma once

#import <WebKit/WKFoundation.h>

NS_ASSUME_NONNULL_BEGIN

/// Made by a store only.
@interface WKContentRuleList : NSObject
- (instancetype)init NS_UNAVAILABLE;
@property(nonatomic, readonly, copy) NSString* identifier;
@end

NS_ASSUME_NONNULL_END
