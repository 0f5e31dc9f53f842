#pragma once

#import <EventKit/EKObject.h>
#import <EventKit/EKTypes.h>

@class EKEventStore, EKSource;

NS_ASSUME_NONNULL_BEGIN

@interface EKCalendar : EKObject
+ (EKCalendar*)calendarForEntityType:(EKEntityType)entityType eventStore:(EKEventStore*)eventStore;
@property(null_unspecified, nonatomic, strong) EKSource* source;
@property(nonatomic, readonly) NSString* calendarIdentifier;
@property(nonatomic, copy) NSString* title;
@property(nonatomic, readonly) BOOL allowsContentModifications;
@end

NS_ASSUME_NONNULL_END
