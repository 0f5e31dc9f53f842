#pragma once

#include "VeskPlatform/Linux/Vdir/EventComponent.hpp"
#include "VeskPlatform/Linux/Vdir/Zones.hpp"

#include <functional>
#include <vector>

namespace vesk::vdir {

/// One occurrence of an item; `component` gives everything but the times.
struct Occurrence {
    Instant start{}, end{};
    const EventComponent* component = nullptr;
    bool hasRecurrenceRules = false;
};

/// The zone that a time is anchored to, all-day and floating times to the local one.
using ZoneFinder = std::function<Zone(const EventTime&)>;

struct OccurrenceList {
    std::vector<Occurrence> occurrences;
    /// A rule gave more than `maximumOccurrences` and was cut off.
    bool cutOff = false;
};

/// The occurrences of one item (a master with its overrides, all of one UID) that start before `to` and end after
/// `from`; one of no length counts where from <= start < to. Ascending by start.
/// Follows RFC 5545: RRULE, EXRULE, RDATE and EXDATE (section 3.8.5), RECURRENCE-ID with THISANDFUTURE (3.8.4.4),
/// lengths (3.6.1), skipped and repeated local times (3.3.5).
OccurrenceList occurrencesOf(const std::vector<EventComponent>& item, Instant from, Instant to,
                             const ZoneFinder& zoneOf);

/// The first occurrence of an item; none where it has none.
std::optional<Occurrence> firstOccurrence(const std::vector<EventComponent>& item, const ZoneFinder& zoneOf);

} // namespace vesk::vdir
