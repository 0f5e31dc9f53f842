#include "VeskPlatform/Linux/Vdir/Occurrences.hpp"

#include "VeskPlatform/Linux/Vdir/RecurrenceRule.hpp"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace vesk::vdir {
namespace {

using namespace std::chrono;

/// Every wall differs from UTC, and from every other wall, by less than this.
constexpr auto wallSlack = days(2);

/// The days around the year 1 and 9999 within which wall times stay printable and the library's fields in range.
const WallTime earliestWall = local_days{year{1} / 1 / 1};
const WallTime latestWall = local_days{year{9999} / 12 / 31};

WallTime wallNear(Instant instant, seconds shift) {
    const WallTime wall{floor<seconds>(instant).time_since_epoch()};
    if (shift < seconds(0) && wall - earliestWall < -shift) return earliestWall;
    if (shift > seconds(0) && latestWall - wall < shift) return latestWall;
    return std::clamp(wall + shift, earliestWall, latestWall);
}

Instant instantOf(const EventTime& time, const ZoneFinder& zoneOf) {
    const Zone zone = zoneOf(time);
    return time.isDate() ? zone->startOfDay(floor<days>(time.wall)) : zone->instant(time.wall);
}

/// How long an occurrence takes: whole days on its wall, then an exact rest.
EventDuration lengthOf(const EventComponent& event, const ZoneFinder& zoneOf) {
    EventDuration length;
    if (event.start.isDate()) {
        if (event.end)
            length.days = floor<days>(event.end->wall) - floor<days>(event.start.wall);
        else if (event.duration)
            length.days = event.duration->days + floor<days>(event.duration->exact);
        else
            length.days = days(1);
        // A day that ends where it starts is what several programs write for one day.
        length.days = std::max(length.days, days(1));
    } else if (event.end) {
        // The same exact length for each occurrence (RFC 5545, section 3.8.5.3).
        length.exact = floor<seconds>(instantOf(*event.end, zoneOf) - instantOf(event.start, zoneOf));
        length.exact = std::max(length.exact, seconds(0));
    } else if (event.duration && event.duration->days + event.duration->exact > seconds(0)) {
        length = *event.duration;
    }
    return length;
}

Instant endOf(const EventTime& start, Instant startInstant, const EventDuration& length, const ZoneFinder& zoneOf) {
    if (length.days == days(0)) return startInstant + length.exact;
    EventTime end = start;
    end.wall = std::min(start.wall + length.days, latestWall);
    return instantOf(end, zoneOf) + length.exact;
}

bool overlaps(const Occurrence& occurrence, Instant from, Instant to) {
    if (occurrence.start >= to) return false;
    return occurrence.end > from || (occurrence.start == occurrence.end && occurrence.start >= from);
}

/// One VEVENT without RECURRENCE-ID, with the overrides that belong to it.
class Series {
public:
    Series(const EventComponent& master, std::vector<const EventComponent*> overrides, const ZoneFinder& zoneOf)
        : master_(master), overrides_(std::move(overrides)), zoneOf_(zoneOf), length_(lengthOf(master, zoneOf)) {
        for (const EventTime& date : master_.excludedDates) exclude(date);
        for (const EventComponent* override : overrides_) {
            const Instant id = instantOf(*override->recurrenceId, zoneOf_);
            replaced_.insert(id);
            if (override->recurrenceId->isDate() != master_.start.isDate())
                replacedDays_.insert(floor<days>(override->recurrenceId->wall));
            if (override->thisAndFuture) future_.emplace(id, override);
        }
    }

    void collect(Instant from, Instant to, OccurrenceList& out) const {
        const WallTime first = wallNear(from, -(reach() + wallSlack)), last = wallNear(to, reach() + wallSlack);
        std::map<WallTime, const ExtraDate*> starts = startsBetween(first, last, out.cutOff);
        for (const auto& [wall, extra] : starts) add(wall, extra, from, to, out);
        for (const EventComponent* override : overrides_) addOverride(*override, from, to, out);
    }

private:
    /// The farthest that an occurrence lies from the start that the rule gives it.
    seconds reach() const {
        seconds farthest = length_.days + length_.exact;
        for (const auto& [id, override] : future_) {
            const seconds shift = abs(override->start.wall - override->recurrenceId->wall);
            const EventDuration length = lengthOf(*override, zoneOf_);
            farthest = std::max(farthest, shift + length.days + length.exact);
        }
        return std::min<seconds>(farthest, days(400'000));
    }

    void exclude(const EventTime& date) {
        if (date.isDate() || master_.start.isDate())
            excludedDays_.insert(floor<days>(date.wall));
        else
            excluded_.insert(instantOf(date, zoneOf_));
    }

    EventTime atWall(WallTime wall) const {
        EventTime time = master_.start;
        time.wall = wall;
        return time;
    }

    /// A start of the series on the series' own wall.
    WallTime onSeriesWall(const EventTime& time) const {
        if (master_.start.isDate()) return WallTime{floor<days>(time.wall)};
        if (time.isDate()) return time.wall + (master_.start.wall - floor<days>(master_.start.wall));
        if (time.anchor == master_.start.anchor && time.tzid == master_.start.tzid) return time.wall;
        return zoneOf_(master_.start)->wallTime(instantOf(time, zoneOf_));
    }

    std::map<WallTime, const ExtraDate*> startsBetween(WallTime first, WallTime last, bool& cutOff) const {
        std::map<WallTime, const ExtraDate*> starts;
        const auto instantOfWall = [this](WallTime wall) { return instantOf(atWall(wall), zoneOf_); };
        if (master_.start.wall >= first && master_.start.wall <= last) starts.emplace(master_.start.wall, nullptr);
        for (const std::string& rule : master_.rules) {
            const auto found = ruleOccurrences(rule, master_.start, first, last, instantOfWall);
            cutOff = cutOff || found.size() >= maximumOccurrences;
            for (const WallTime wall : found) starts.emplace(wall, nullptr);
        }
        for (const ExtraDate& extra : master_.extraDates) {
            const WallTime wall = onSeriesWall(extra.start);
            if (wall >= first && wall <= last)
                starts.insert_or_assign(wall, extra.end || extra.duration ? &extra : nullptr);
        }
        for (const std::string& rule : master_.excludedRules)
            for (const WallTime wall : ruleOccurrences(rule, master_.start, first, last, instantOfWall))
                starts.erase(wall);
        return starts;
    }

    void add(WallTime wall, const ExtraDate* extra, Instant from, Instant to, OccurrenceList& out) const {
        if (excludedDays_.contains(floor<days>(wall)) || replacedDays_.contains(floor<days>(wall))) return;
        const EventTime start = atWall(wall);
        const Instant id = instantOf(start, zoneOf_);
        if (excluded_.contains(id) || replaced_.contains(id)) return;
        const auto later = future_.upper_bound(id);
        if (later != future_.begin()) return addShifted(wall, *std::prev(later)->second, from, to, out);
        Occurrence occurrence{id, {}, &master_, !master_.rules.empty()};
        if (extra != nullptr && extra->end)
            occurrence.end = std::max(id, instantOf(*extra->end, zoneOf_));
        else
            occurrence.end = endOf(start, id, extra != nullptr ? *extra->duration : length_, zoneOf_);
        if (overlaps(occurrence, from, to)) out.occurrences.push_back(occurrence);
    }

    /// An occurrence behind an override of THISANDFUTURE moves as far as the override's own start moved.
    void addShifted(WallTime wall, const EventComponent& override, Instant from, Instant to,
                    OccurrenceList& out) const {
        EventTime start = override.start;
        start.wall =
            std::clamp(wall + (override.start.wall - onSeriesWall(*override.recurrenceId)), earliestWall, latestWall);
        if (start.isDate()) start.wall = floor<days>(start.wall);
        Occurrence occurrence{instantOf(start, zoneOf_), {}, &override, !master_.rules.empty()};
        occurrence.end = endOf(start, occurrence.start, lengthOf(override, zoneOf_), zoneOf_);
        if (overlaps(occurrence, from, to)) out.occurrences.push_back(occurrence);
    }

    void addOverride(const EventComponent& override, Instant from, Instant to, OccurrenceList& out) const {
        Occurrence occurrence{instantOf(override.start, zoneOf_), {}, &override, !master_.rules.empty()};
        occurrence.end = endOf(override.start, occurrence.start, lengthOf(override, zoneOf_), zoneOf_);
        if (overlaps(occurrence, from, to)) out.occurrences.push_back(occurrence);
    }

    const EventComponent& master_;
    std::vector<const EventComponent*> overrides_;
    const ZoneFinder& zoneOf_;
    EventDuration length_;
    std::set<Instant> excluded_, replaced_;
    std::set<WallDay> excludedDays_, replacedDays_;
    std::map<Instant, const EventComponent*> future_;
};

/// The last revision of each override (by SEQUENCE, then by place), in file order.
std::vector<const EventComponent*> latestOverrides(const std::vector<EventComponent>& item, const ZoneFinder& zoneOf) {
    std::map<Instant, const EventComponent*> latest;
    for (const EventComponent& event : item) {
        if (!event.recurrenceId) continue;
        const EventComponent*& slot = latest[instantOf(*event.recurrenceId, zoneOf)];
        if (slot == nullptr || event.sequence >= slot->sequence) slot = &event;
    }
    std::vector<const EventComponent*> result;
    for (const auto& [id, event] : latest) result.push_back(event);
    return result;
}

} // namespace

OccurrenceList occurrencesOf(const std::vector<EventComponent>& item, Instant from, Instant to,
                             const ZoneFinder& zoneOf) {
    OccurrenceList result;
    std::vector<const EventComponent*> overrides = latestOverrides(item, zoneOf);
    // Several masters of one UID are no valid item; each is listed rather than lost, and the first keeps the overrides.
    for (const EventComponent& event : item) {
        if (event.recurrenceId) continue;
        Series(event, std::exchange(overrides, {}), zoneOf).collect(from, to, result);
    }
    // Overrides without their master: an invitation to some of somebody else's occurrences.
    for (const EventComponent* override : overrides) Series(*override, {}, zoneOf).collect(from, to, result);
    std::stable_sort(result.occurrences.begin(), result.occurrences.end(),
                     [](const auto& a, const auto& b) { return a.start < b.start; });
    return result;
}

std::optional<Occurrence> firstOccurrence(const std::vector<EventComponent>& item, const ZoneFinder& zoneOf) {
    if (item.empty()) return std::nullopt;
    Instant begin = instantOf(item.front().start, zoneOf);
    for (const EventComponent& event : item) begin = std::min(begin, instantOf(event.start, zoneOf));
    // Most items have an occurrence at their start; exceptions can push the first one far out.
    const Instant end = Instant{latestWall.time_since_epoch()};
    for (auto span = days(1); begin < end; span *= 8) {
        const Instant to = std::min(end, begin + span);
        const auto found = occurrencesOf(item, begin - days(1), to, zoneOf).occurrences;
        if (!found.empty()) return found.front();
        if (to == end) break;
    }
    return std::nullopt;
}

} // namespace vesk::vdir
