#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSUUID : NSObject <NSCopying, NSSecureCoding>
+ (instancetype)UUID;
@property(readonly, copy) NSString* UUIDString;
@end

NS_ASSUME_NONNULL_END
