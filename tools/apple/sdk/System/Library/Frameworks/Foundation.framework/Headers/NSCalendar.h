#import <Foundation/NSObject.h>
#import <Foundation/NSString.h>
#import <Foundation/NSTimeZone.h>
#import <limits.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSCalendarIdentifier;
FOUNDATION_EXPORT const NSCalendarIdentifier NSCalendarIdentifierGregorian;

@interface NSCalendar : NSObject <NSCopying>
+ (nullable NSCalendar*)calendarWithIdentifier:(NSCalendarIdentifier)identifier;
@property(copy) NSTimeZone* timeZone;
@end

/// The value of a part that was never given.
enum : NSInteger { NSDateComponentUndefined = LONG_MAX };

@interface NSDateComponents : NSObject <NSCopying>
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
