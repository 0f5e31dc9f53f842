#pragma once

#import <Foundation/NSDate.h>
#import <Foundation/NSTimeZone.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSCalendarIdentifier NS_TYPED_EXTENSIBLE_ENUM;
FOUNDATION_EXPORT const NSCalendarIdentifier NSCalendarIdentifierGregorian;

enum : NSInteger { NSDateComponentUndefined = NSIntegerMax };

@interface NSCalendar : NSObject <NSCopying, NSSecureCoding>
@property(class, readonly, copy) NSCalendar* currentCalendar;
+ (nullable NSCalendar*)calendarWithIdentifier:(NSCalendarIdentifier)identifier;
@property(copy) NSTimeZone* timeZone;
@end

@interface NSDateComponents : NSObject <NSCopying, NSSecureCoding>
@property(nullable, copy) NSCalendar* calendar;
@property(nullable, copy) NSTimeZone* timeZone;
@property NSInteger year;
@property NSInteger month;
@property NSInteger day;
@property NSInteger hour;
@property NSInteger minute;
@property NSInteger second;
@end

NS_ASSUME_NONNULL_END
