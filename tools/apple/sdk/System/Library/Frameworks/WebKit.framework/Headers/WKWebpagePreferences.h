#pragma once

#import <WebKit/WKFoundation.h>

NS_ASSUME_NONNULL_BEGIN

API_AVAILABLE(macos(10.15))
@interface WKWebpagePreferences : NSObject
@property(nonatomic) BOOL allowsContentJavaScript API_AVAILABLE(macos(11.0));
@end

NS_ASSUME_NONNULL_END
