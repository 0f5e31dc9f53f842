#pragma once

#import <EventKit/EKObject.h>

@class EKCalendar, EKParticipant, EKRecurrenceRule;

NS_ASSUME_NONNULL_BEGIN

@interface EKCalendarItem : EKObject
@property(null_unspecified, nonatomic, strong) EKCalendar* calendar;
@property(nonatomic, readonly) NSString* calendarItemIdentifier;
@property(null_unspecified, nonatomic, copy) NSString* title;
@property(nullable, nonatomic, copy) NSString* location;
@property(nullable, nonatomic, copy) NSString* notes;
@property(nullable, nonatomic, copy) NSURL* URL;
@property(nullable, nonatomic, readonly) NSDate* lastModifiedDate;
@property(nullable, nonatomic, readonly, strong) NSDate* creationDate;
@property(nullable, nonatomic, readonly) NSArray<EKParticipant*>* attendees;
@property(nullable, nonatomic, copy) NSArray<EKRecurrenceRule*>* recurrenceRules;
@end

NS_ASSUME_NONNULL_END
