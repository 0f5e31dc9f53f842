#pragma once

#include "VeskPlatform/EventStore.hpp"
#include "VeskPlatform/Platform.hpp"
#include "VeskSupport/LocalCalendar.hpp"

#include <optional>
#include <string>

// How an invitation is found, and how an answer to it is named.

namespace vesk::VeskCalendarOperations {

/// "accepted", "declined", "tentative" or "propose_time" for the words people use, case, hyphens and blanks aside.
/// Throws CalendarError (400) for any other text.
std::string normalizeInviteResponse(const std::string& response);

/// Lower case, its runs of letters and digits divided by single blanks; of punctuation nothing is left.
std::string normalizeComparableTitle(const std::string& title);

/// What a caller knows of an invitation.
struct InviteQuery {
    std::optional<std::string> eventIdentifier;
    std::optional<std::string> sourceKey;
    std::optional<std::string> title;
    /// Where to search: a day around it, else from a week ago to 31 days ahead.
    std::optional<std::string> startAt;
};

/// The event of that identifier; failing that the earliest occurrence in the searched days with that source key, or,
/// only where no source key is given, with that title. Throws CalendarError (400) for an unreadable start.
std::optional<CalendarEvent> findEventForInviteResponse(Platform& platform, const InviteQuery& query,
                                                        const LocalCalendar& calendar);

} // namespace vesk::VeskCalendarOperations
