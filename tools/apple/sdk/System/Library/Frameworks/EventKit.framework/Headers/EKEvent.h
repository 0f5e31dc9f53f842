#pragma once

#import <EventKit/EKCalendarItem.h>

@class EKEventStore;

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSInteger, EKEventAvailability) {
    EKEventAvailabilityNotSupported = -1,
    EKEventAvailabilityBusy = 0,
    EKEventAvailabilityFree = 1,
    EKEventAvailabilityTentative = 2,
    EKEventAvailabilityUnavailable = 3,
};

typedef NS_ENUM(NSInteger, EKEventStatus) {
    EKEventStatusNone = 0,
    EKEventStatusConfirmed = 1,
    EKEventStatusTentative = 2,
    EKEventStatusCanceled = 3,
};

@interface EKEvent : EKCalendarItem
+ (EKEvent*)eventWithEventStore:(EKEventStore*)eventStore;
@property(null_unspecified, nonatomic, readonly) NSString* eventIdentifier;
@property(nonatomic, getter=isAllDay) BOOL allDay;
@property(null_unspecified, nonatomic, copy) NSDate* startDate;
@property(null_unspecified, nonatomic, copy) NSDate* endDate;
@property(nonatomic, readonly, nullable) EKParticipant* organizer;
@property(nonatomic) EKEventAvailability availability;
@property(nonatomic, readonly) EKEventStatus status;
@end

NS_ASSUME_NONNULL_END
