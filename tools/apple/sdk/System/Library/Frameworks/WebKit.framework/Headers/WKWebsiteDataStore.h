#pragma once

#import <WebKit/WKFoundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface WKWebsiteDataStore : NSObject <NSSecureCoding>
- (instancetype)init NS_UNAVAILABLE;
+ (WKWebsiteDataStore*)nonPersistentDataStore;
@end

NS_ASSUME_NONNULL_END
