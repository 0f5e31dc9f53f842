#pragma once

#import <EventKit/EKObject.h>

@interface EKRecurrenceRule : EKObject
@end
