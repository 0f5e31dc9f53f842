#pragma once

#include "VeskPlatform/EventStore.hpp"
#include "VeskSupport/LocalCalendar.hpp"

#include <string>

namespace vesk::vdir {

/// A calendar object (RFC 5545) that holds one new event. Times are written with the local zone's TZID and definition;
/// in UTC where that zone is UTC or where the wall time exists twice; as dates for an all-day event.
std::string newEventText(const NewEvent& event, const std::string& uid, Instant now, const LocalCalendar& local);

} // namespace vesk::vdir
