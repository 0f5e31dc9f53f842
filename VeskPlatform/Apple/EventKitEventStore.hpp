#pragma once

#import <EventKit/EventKit.h>

#include "VeskPlatform/EventStore.hpp"

namespace vesk {

/// The user's calendars through EventKit, in a store of its own. All-day events start and end as EventKit tells it.
class EventKitEventStore : public EventStore {
public:
    std::vector<EventCalendar> calendars() override;
    std::vector<CalendarEvent> events(Instant from, Instant to,
                                      const std::vector<std::string>& calendarIdentifiers) override;
    std::optional<CalendarEvent> event(const std::string& identifier) override;
    CalendarEvent save(const NewEvent& event) override;

private:
    EKEventStore* store_ = [[EKEventStore alloc] init];
};

} // namespace vesk
