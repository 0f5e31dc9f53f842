#pragma once

#import <EventKit/EKTypes.h>
#import <Foundation/Foundation.h>

@class EKCalendar, EKCalendarItem, EKEvent, EKReminder, EKSource;

NS_ASSUME_NONNULL_BEGIN

typedef void (^EKEventStoreRequestAccessCompletionHandler)(BOOL granted, NSError* _Nullable error);

@interface EKEventStore : NSObject
+ (EKAuthorizationStatus)authorizationStatusForEntityType:(EKEntityType)entityType;
- (instancetype)init;
- (void)requestFullAccessToEventsWithCompletion:(EKEventStoreRequestAccessCompletionHandler)completion
    API_AVAILABLE(macos(14.0));
- (void)requestFullAccessToRemindersWithCompletion:(EKEventStoreRequestAccessCompletionHandler)completion
    API_AVAILABLE(macos(14.0));

@property(nonatomic, readonly) NSArray<EKSource*>* sources;
- (NSArray<EKCalendar*>*)calendarsForEntityType:(EKEntityType)entityType;
- (nullable EKCalendar*)defaultCalendarForNewReminders;
- (BOOL)saveCalendar:(EKCalendar*)calendar commit:(BOOL)commit error:(NSError**)error;
- (nullable EKCalendarItem*)calendarItemWithIdentifier:(NSString*)identifier;

- (BOOL)saveEvent:(EKEvent*)event span:(EKSpan)span commit:(BOOL)commit error:(NSError**)error;
- (nullable EKEvent*)eventWithIdentifier:(NSString*)identifier;
- (NSArray<EKEvent*>*)eventsMatchingPredicate:(NSPredicate*)predicate;
- (NSPredicate*)predicateForEventsWithStartDate:(NSDate*)startDate
                                        endDate:(NSDate*)endDate
                                      calendars:(nullable NSArray<EKCalendar*>*)calendars;

- (BOOL)saveReminder:(EKReminder*)reminder commit:(BOOL)commit error:(NSError**)error;
- (BOOL)removeReminder:(EKReminder*)reminder commit:(BOOL)commit error:(NSError**)error;
- (id)fetchRemindersMatchingPredicate:(NSPredicate*)predicate
                           completion:(void (^)(NSArray<EKReminder*>* _Nullable reminders))completion;
- (NSPredicate*)predicateForRemindersInCalendars:(nullable NSArray<EKCalendar*>*)calendars;
@end

NS_ASSUME_NONNULL_END
