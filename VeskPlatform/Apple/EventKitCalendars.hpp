#pragma once

#import <EventKit/EventKit.h>

#include <string>
#include <vector>

NS_ASSUME_NONNULL_BEGIN

namespace vesk {

/// The calendars of that type with those identifiers, in the store's order; one that is not there is left out.
NSArray<EKCalendar*>* calendarsNamed(const std::vector<std::string>& identifiers, EKEntityType type,
                                     EKEventStore* store);
/// None where the store has no such calendar.
EKCalendar* _Nullable calendarNamed(const std::string& identifier, EKEntityType type, EKEventStore* store);

} // namespace vesk

NS_ASSUME_NONNULL_END
