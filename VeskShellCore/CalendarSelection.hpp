#pragma once

#include "VeskPlatform/EventStore.hpp"
#include "VeskPlatform/LocaleSettings.hpp"
#include "VeskShellCore/CalendarError.hpp"

#include <optional>
#include <string>
#include <vector>

// Which calendars count, and the one order of their events.

namespace vesk::VeskCalendarOperations {

/// The store's calendars in its order, without those whose title holds "holiday" in any case.
std::vector<EventCalendar> eligibleCalendars(EventStore& store);

/// The first calendar of exactly that title, else the first whose title differs in case only, by the user's locale.
std::optional<EventCalendar> findCalendar(const std::string& name, const std::vector<EventCalendar>& calendars,
                                          LocaleSettings& locale);

/// The failure that names the calendars to choose from.
CalendarError calendarNotFoundError(const std::string& name, const std::vector<EventCalendar>& availableCalendars);

/// `calendars` less those excluded by identifier, exactly, or by whole title, case aside. The exclusions are trimmed,
/// empty ones exclude nothing.
std::vector<EventCalendar> filterExcludedCalendars(std::vector<EventCalendar> calendars,
                                                   const std::vector<std::string>& excludeCalendarIdentifiers,
                                                   const std::vector<std::string>& excludeCalendarNames);

/// The occurrences of a window (`EventStore::events`) by start, then calendar title, then title to show; titles by
/// code point. Equal ones keep the store's order.
std::vector<CalendarEvent> fetchEvents(EventStore& store, const std::vector<EventCalendar>& calendars, Instant start,
                                       Instant end);

} // namespace vesk::VeskCalendarOperations
