#include "VeskPlatform/Linux/Vdir/Occurrences.hpp"

#include "VeskPlatform/Linux/Vdir/RecurrenceRule.hpp"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace vesk::vdir {
namespace {

using namespace std::chrono;

/// Every wall differs from UTC by less than a day, and from every other wall by less than this.
constexpr auto wallSlack = days(2);
/// No change of an offset is larger: Samoa left out a whole day in 2011.
constexpr auto changeSlack = hours(26);

/// The days around the year 1 and 9999 within which wall times stay printable and the library's fields in range.
const WallTime earliestWall = local_days{year{1} / 1 / 1};
const WallTime latestWall = local_days{year{9999} / 12 / 31} + days(1) - seconds(1);

WallTime clampedWall(WallTime wall) { return std::clamp(wall, earliestWall, latestWall); }

/// The wall of an instant, which may lie outside the range of years.
WallTime wallOf(Instant instant, const LocalCalendar& zone) {
    const auto early = Instant{earliestWall.time_since_epoch()}, late = Instant{latestWall.time_since_epoch()};
    return clampedWall(zone.wallTime(std::clamp(instant, early, late)));
}

/// How far the wall can be from a steady one at that time.
seconds slackNear(WallTime wall, const LocalCalendar& zone) {
    const Instant instant{wall.time_since_epoch()};
    const bool steady = zone.offset(instant - wallSlack) == zone.offset(instant + wallSlack);
    return steady ? seconds(0) : changeSlack;
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
        : master_(master), overrides_(std::move(overrides)), zoneOf_(zoneOf), zone_(zoneOf(master.start)),
          length_(lengthOf(master, zoneOf)) {
        for (const EventTime& date : master_.excludedDates) exclude(date);
        for (const EventComponent* override : overrides_) {
            const Instant id = instantOf(*override->recurrenceId, zoneOf_);
            replaced_.insert(id);
            if (override->recurrenceId->isDate() != master_.start.isDate())
                replacedDays_.insert(floor<days>(override->recurrenceId->wall));
            if (override->thisAndFuture) future_.emplace(id, override);
        }
        for (const ExtraDate& extra : master_.extraDates) {
            const Start start = extraStart(extra);
            (start.period != nullptr ? periods_ : extras_).push_back(start);
        }
        std::sort(extras_.begin(), extras_.end(), [](const Start& a, const Start& b) { return a.wall < b.wall; });
    }

    void collect(Instant from, Instant to, OccurrenceList& out) const {
        WallWindow own = wallWindow(master_.start, length_, from, to);
        if (!future_.empty()) own.last = std::min(own.last, wallBehind(future_.begin()->first));
        for (const Start& start : startsWithin(own, out.cutOff))
            if (isListed(start) && governing(start) == nullptr) add(start, from, to, out);
        for (auto shifted = future_.begin(); shifted != future_.end(); ++shifted)
            collectShifted(shifted, from, to, out);
        for (const EventComponent* override : overrides_)
            addOccurrence(override->start, instantOf(override->start, zoneOf_), *override, from, to, out);
    }

private:
    /// One start of the series, on its wall.
    struct Start {
        Instant instant{};
        WallTime wall{};
        /// The RDATE that it stems from, where that has a length of its own.
        const ExtraDate* period = nullptr;
    };

    /// The overrides of THISANDFUTURE by the instant that they name.
    using FutureOverrides = std::map<Instant, const EventComponent*>;

    /// Walls of the series that are surely before and behind an instant.
    WallTime wallBefore(Instant instant) const { return clampedWall(wallOf(instant, *zone_) - wallSlack); }
    WallTime wallBehind(Instant instant) const { return clampedWall(wallOf(instant, *zone_) + wallSlack); }

    struct WallWindow {
        WallTime first{}, last{};
    };

    /// The walls, on that of `start`, between which starts of that length matter. Exact where the offset is steady, so
    /// that a rule that is cut off has given its times within the window.
    WallWindow wallWindow(const EventTime& start, const EventDuration& length, Instant from, Instant to) const {
        const Zone zone = zoneOf_(start);
        const seconds longest = std::min<seconds>(length.days + length.exact, days(4'000'000));
        const bool longOrAllDay = start.isDate() || longest > days(1);
        const WallTime first = wallOf(from, *zone), last = wallOf(to, *zone);
        const seconds before = longOrAllDay ? seconds(changeSlack) : slackNear(first, *zone);
        const seconds after = longOrAllDay ? seconds(changeSlack) : slackNear(last, *zone);
        return {clampedWall(first - longest - before), clampedWall(last + after)};
    }

    /// The override of THISANDFUTURE that a start lies behind, if any.
    const EventComponent* governing(const Start& start) const {
        const auto later = future_.upper_bound(start.instant);
        return later == future_.begin() ? nullptr : std::prev(later)->second;
    }

    bool isListed(const Start& start) const {
        const WallDay day = floor<days>(start.wall);
        return !excludedDays_.contains(day) && !replacedDays_.contains(day) && !excluded_.contains(start.instant)
               && !replaced_.contains(start.instant);
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

    /// A time on the series' own wall.
    WallTime onSeriesWall(const EventTime& time) const {
        if (master_.start.isDate()) return WallTime{floor<days>(time.wall)};
        if (time.isDate()) return time.wall + (master_.start.wall - floor<days>(master_.start.wall));
        if (time.anchor == master_.start.anchor && time.tzid == master_.start.tzid) return time.wall;
        return zone_->wallTime(instantOf(time, zoneOf_));
    }

    Instant instantOfWall(WallTime wall) const {
        return master_.start.isDate() ? zone_->startOfDay(floor<days>(wall)) : zone_->instant(wall);
    }

    Start startAt(WallTime wall) const { return {instantOfWall(wall), wall, nullptr}; }

    Start extraStart(const ExtraDate& extra) const {
        Start start = startAt(onSeriesWall(extra.start));
        // The wall alone cannot tell the two passes of a repeated hour.
        if (!master_.start.isDate() && !extra.start.isDate()) start.instant = instantOf(extra.start, zoneOf_);
        if (extra.end || extra.duration) start.period = &extra;
        return start;
    }

    /// By instant, each once; a period goes before a start of the series' own length.
    std::vector<Start> startsWithin(const WallWindow& window, bool& cutOff) const {
        const auto [first, last] = window;
        const auto instantOnWall = [this](WallTime wall) { return instantOfWall(wall); };
        std::vector<Start> starts;
        if (last < first) return starts;
        if (master_.start.wall >= first && master_.start.wall <= last) starts.push_back(startAt(master_.start.wall));
        for (const std::string& rule : master_.rules) {
            const auto found = ruleOccurrences(rule, master_.start, first, last, instantOnWall);
            cutOff = cutOff || found.size() >= maximumOccurrences;
            for (const WallTime wall : found) starts.push_back(startAt(wall));
        }
        // A period may be longer than the series' own length, so that the window says nothing about its start.
        starts.insert(starts.end(), periods_.begin(), periods_.end());
        const auto byWall = [](const Start& a, const Start& b) { return a.wall < b.wall; };
        starts.insert(starts.end(), std::lower_bound(extras_.begin(), extras_.end(), Start{{}, first, nullptr}, byWall),
                      std::upper_bound(extras_.begin(), extras_.end(), Start{{}, last, nullptr}, byWall));
        std::sort(starts.begin(), starts.end(), [](const Start& a, const Start& b) {
            return std::pair(a.instant, a.period == nullptr) < std::pair(b.instant, b.period == nullptr);
        });
        const auto same = [](const Start& a, const Start& b) { return a.instant == b.instant; };
        starts.erase(std::unique(starts.begin(), starts.end(), same), starts.end());
        leaveOut(excludedInstants(first, last), starts);
        return starts;
    }

    std::vector<Instant> excludedInstants(WallTime first, WallTime last) const {
        std::vector<Instant> instants;
        const auto instantOnWall = [this](WallTime wall) { return instantOfWall(wall); };
        for (const std::string& rule : master_.excludedRules)
            for (const WallTime wall : ruleOccurrences(rule, master_.start, first, last, instantOnWall))
                instants.push_back(instantOfWall(wall));
        std::sort(instants.begin(), instants.end());
        return instants;
    }

    static void leaveOut(const std::vector<Instant>& instants, std::vector<Start>& starts) {
        std::erase_if(starts, [&](const Start& start) {
            return std::binary_search(instants.begin(), instants.end(), start.instant);
        });
    }

    void add(const Start& start, Instant from, Instant to, OccurrenceList& out) const {
        Occurrence occurrence{start.instant, {}, &master_, !master_.rules.empty()};
        if (start.period != nullptr && start.period->end)
            occurrence.end = instantOf(*start.period->end, zoneOf_);
        else
            occurrence.end = endOf(atWall(start.wall), start.instant,
                                   start.period != nullptr ? *start.period->duration : length_, zoneOf_);
        occurrence.end = std::max(occurrence.end, occurrence.start);
        if (overlaps(occurrence, from, to)) out.occurrences.push_back(occurrence);
    }

    /// The occurrences behind an override of THISANDFUTURE move as far as its own start moved.
    void collectShifted(FutureOverrides::const_iterator place, Instant from, Instant to, OccurrenceList& out) const {
        const EventComponent& override = *place->second;
        const seconds shift = override.start.wall - onSeriesWall(*override.recurrenceId);
        WallWindow window = wallWindow(override.start, lengthOf(override, zoneOf_), from, to);
        // An all-day override of a timed series drops the time of day.
        window = {clampedWall(window.first - shift - days(1)), clampedWall(window.last - shift + days(1))};
        window.first = std::max(window.first, wallBefore(place->first));
        if (const auto next = std::next(place); next != future_.end())
            window.last = std::min(window.last, wallBehind(next->first));
        for (const Start& start : startsWithin(window, out.cutOff)) {
            if (!isListed(start) || governing(start) != &override) continue;
            EventTime moved = override.start;
            moved.wall = clampedWall(start.wall + shift);
            if (moved.isDate()) moved.wall = floor<days>(moved.wall);
            addOccurrence(moved, instantOf(moved, zoneOf_), override, from, to, out);
        }
    }

    void addOccurrence(const EventTime& start, Instant instant, const EventComponent& component, Instant from,
                       Instant to, OccurrenceList& out) const {
        Occurrence occurrence{instant, {}, &component, !master_.rules.empty()};
        occurrence.end = endOf(start, instant, lengthOf(component, zoneOf_), zoneOf_);
        if (overlaps(occurrence, from, to)) out.occurrences.push_back(occurrence);
    }

    const EventComponent& master_;
    std::vector<const EventComponent*> overrides_;
    const ZoneFinder& zoneOf_;
    Zone zone_;
    EventDuration length_;
    std::set<Instant> excluded_, replaced_;
    std::set<WallDay> excludedDays_, replacedDays_;
    FutureOverrides future_;
    /// The RDATEs without a length of their own by wall, and the periods.
    std::vector<Start> extras_, periods_;
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
    for (const EventComponent& event : item) {
        begin = std::min(begin, instantOf(event.start, zoneOf));
        for (const ExtraDate& extra : event.extraDates) begin = std::min(begin, instantOf(extra.start, zoneOf));
    }
    // Most items have an occurrence at their start; exceptions can push the first one far out.
    const Instant end = Instant{latestWall.time_since_epoch()} + wallSlack;
    for (auto span = days(1); begin < end; span *= 8) {
        const Instant to = std::min(end, begin + span);
        const auto found = occurrencesOf(item, begin - days(1), to, zoneOf).occurrences;
        if (!found.empty()) return found.front();
        if (to == end) break;
    }
    return std::nullopt;
}

} // namespace vesk::vdir
