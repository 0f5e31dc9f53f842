#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

API_AVAILABLE(macos(11.0))
@interface UTType : NSObject <NSCopying, NSSecureCoding>
@property(readonly) NSString* identifier;
@end

NS_ASSUME_NONNULL_END
