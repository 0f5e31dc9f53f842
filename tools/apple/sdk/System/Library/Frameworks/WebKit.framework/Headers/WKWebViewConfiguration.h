#pragma once

#import <WebKit/WKFoundation.h>

NS_ASSUME_NONNULL_BEGIN

@class WKPreferences;
@class WKUserContentController;
@class WKWebpagePreferences;
@class WKWebsiteDataStore;

@interface WKWebViewConfiguration : NSObject <NSCopying, NSSecureCoding>
@property(nonatomic, strong) WKPreferences* preferences;
@property(nonatomic, strong) WKUserContentController* userContentController;
@property(nonatomic, strong) WKWebsiteDataStore* websiteDataStore API_AVAILABLE(macos(10.11));
@property(null_resettable, nonatomic, copy) WKWebpagePreferences* defaultWebpagePreferences API_AVAILABLE(macos(10.15));
@end

NS_ASSUME_NONNULL_END
