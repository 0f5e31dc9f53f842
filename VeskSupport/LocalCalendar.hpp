#pragma once

#include "VeskSupport/Instant.hpp"

#include <memory>
#include <optional>
#include <string>

namespace vesk {

/// Wall times that do not exist, and wall times that exist twice, when a zone changes its offset.
enum class WallTimeKind { unique, skipped, repeated };

/// The instants that a wall time can mean. Where it is repeated, `earlier` < `later`. Where it is skipped, `earlier`
/// uses the offset after the gap and `later` the offset before it (RFC 5545, section 3.3.5, means `later`).
struct WallTimeMeaning {
    WallTimeKind kind;
    Instant earlier, later;
};

/// The Gregorian calendar (proleptic) in one time zone, with ICU's rules of the zone.
class LocalCalendar {
public:
    /// `zoneIdentifier` is an Olson name, a custom one such as "GMT+02:00", or a POSIX rule such as
    /// "CET-1CEST,M3.5.0,M10.5.0/3"; an unknown one counts as UTC.
    explicit LocalCalendar(const std::string& zoneIdentifier);
    /// The zone that a VTIMEZONE component describes (RFC 5545, section 3.6.5); none where ICU cannot read it.
    static std::optional<LocalCalendar> fromVTimeZone(const std::string& component);
    /// Whether `zoneIdentifier` is an Olson name that ICU knows.
    static bool isKnownZone(const std::string& zoneIdentifier);
    /// The Olson name behind a Windows zone name ("W. Europe Standard Time"), none where it is not one.
    static std::optional<std::string> zoneForWindowsName(const std::string& windowsName);

    LocalCalendar(LocalCalendar&&) noexcept;
    LocalCalendar& operator=(LocalCalendar&&) noexcept;
    ~LocalCalendar();

    const std::string& zoneIdentifier() const { return zoneIdentifier_; }
    std::chrono::seconds offset(Instant instant) const;
    WallTime wallTime(Instant instant) const;
    WallTimeMeaning meaning(WallTime wall) const;
    /// The meaning that RFC 5545 gives: the first of a repeated time, the offset before the gap for a skipped one.
    Instant instant(WallTime wall) const;

    /// The first instant of that day, also where its midnight is skipped or repeated.
    Instant startOfDay(WallDay day) const;
    Instant startOfDay(Instant instant) const;
    /// The same wall time `count` days on; a skipped one moves behind the gap, of a repeated one the first is taken.
    /// The start of a day moves to the start of a day, so that a day's window ends where the next begins.
    Instant addDays(Instant instant, int count) const;

    /// A VTIMEZONE component that describes the zone from `start` on (RFC 5545, section 3.6.5).
    std::string vTimeZoneText(Instant start) const;

    /// `2026-04-26T14:00:00+02:00`, "Z" where the offset is zero.
    std::string isoText(Instant instant) const;

private:
    struct Zone;
    LocalCalendar(std::unique_ptr<Zone> zone, std::string zoneIdentifier);

    std::unique_ptr<Zone> zone_;
    std::string zoneIdentifier_;
};

} // namespace vesk
