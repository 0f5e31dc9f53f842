#import "VeskPlatform/Apple/EventKitCalendars.hpp"

#import "VeskPlatform/Apple/FoundationValues.hpp"

#include <algorithm>

namespace vesk {

NSArray<EKCalendar*>* calendarsNamed(const std::vector<std::string>& identifiers, EKEntityType type,
                                     EKEventStore* store) {
    NSMutableArray<EKCalendar*>* named = [NSMutableArray array];
    for (EKCalendar* calendar in [store calendarsForEntityType:type])
        if (std::ranges::find(identifiers, utf8(calendar.calendarIdentifier)) != identifiers.end())
            [named addObject:calendar];
    return named;
}

EKCalendar* _Nullable calendarNamed(const std::string& identifier, EKEntityType type, EKEventStore* store) {
    return calendarsNamed({identifier}, type, store).firstObject;
}

} // namespace vesk
