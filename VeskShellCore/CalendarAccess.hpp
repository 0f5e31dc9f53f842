#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskSupport/Task.hpp"

namespace vesk::VeskCalendarOperations {

/// Returns where the user granted full access to the calendars, asking once where nothing is decided yet. Throws
/// CalendarError: 403 with the remedy where access is refused, 500 for a state that the platform could not tell.
Task<void> ensureCalendarAccess(Platform& platform);

/// Asks the user and logs the question and its outcome; an error of the question is only logged.
Task<bool> requestEventAccess(Platform& platform);

} // namespace vesk::VeskCalendarOperations
