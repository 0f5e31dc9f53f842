#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSTimeZone : NSObject <NSCopying, NSSecureCoding>
@property(readonly, copy) NSString* name;
@property(class, readonly, copy) NSTimeZone* systemTimeZone;
@property(class, readonly, copy) NSTimeZone* localTimeZone;
+ (void)resetSystemTimeZone;
+ (nullable instancetype)timeZoneWithName:(NSString*)name;
@end

NS_ASSUME_NONNULL_END
