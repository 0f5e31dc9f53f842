#pragma once

#import <EventKit/EKCalendar.h>
#import <EventKit/EKCalendarItem.h>
#import <EventKit/EKEvent.h>
#import <EventKit/EKEventStore.h>
#import <EventKit/EKObject.h>
#import <EventKit/EKParticipant.h>
#import <EventKit/EKRecurrenceRule.h>
#import <EventKit/EKReminder.h>
#import <EventKit/EKSource.h>
#import <EventKit/EKTypes.h>
#import <Foundation/Foundation.h>
