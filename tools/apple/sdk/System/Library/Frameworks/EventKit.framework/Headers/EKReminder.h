#pragma once

#import <EventKit/EKCalendarItem.h>

@class EKEventStore;

NS_ASSUME_NONNULL_BEGIN

@interface EKReminder : EKCalendarItem
+ (EKReminder*)reminderWithEventStore:(EKEventStore*)eventStore;
/// In the Gregorian calendar; without a time zone the date floats.
@property(nonatomic, copy, nullable) NSDateComponents* dueDateComponents;
/// Setting it sets the completion date to now or to nothing.
@property(nonatomic, getter=isCompleted) BOOL completed;
@property(nonatomic, copy, nullable) NSDate* completionDate;
@end

NS_ASSUME_NONNULL_END
