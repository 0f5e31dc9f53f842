#pragma once

#import <WebKit/WKFoundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface WKPreferences : NSObject <NSCopying, NSSecureCoding>
@property(nonatomic) BOOL shouldPrintBackgrounds API_AVAILABLE(macos(13.3));
@end

NS_ASSUME_NONNULL_END
