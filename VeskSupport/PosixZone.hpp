#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// A day of each year and a wall time on it (POSIX.1, Base Definitions, section 8.3; hours -167 to 167 as RFC 8536,
/// section 3.3.1, widens them).
struct PosixZoneChange {
    enum class Form { weekdayOfMonth, dayOfCommonYear, dayOfYear };
    Form form = Form::weekdayOfMonth;
    /// weekdayOfMonth: month 1 to 12, week 1 to 5 (5 is the last), weekday 0 (Sunday) to 6.
    int month = 0, week = 0, weekday = 0;
    /// dayOfCommonYear: 1 to 365, 29 February never counted. dayOfYear: 0 to 365, 29 February counted.
    int day = 0;
    std::chrono::seconds time{7200};

    bool operator==(const PosixZoneChange&) const = default;
};

struct PosixDaylightSaving {
    std::chrono::seconds offset{};
    PosixZoneChange start, end;
};

/// The rules of a TZ value such as "CET-1CEST,M3.5.0,M10.5.0/3". Offsets are east of UTC, unlike those in the text.
struct PosixZone {
    std::chrono::seconds offset{};
    std::optional<PosixDaylightSaving> saving;
};

/// None where `text` is not such a value. Daylight saving without dates follows the rules of the United States.
std::optional<PosixZone> parsePosixZone(std::string_view text);

/// The identifier of a POSIX zone, as `LocalCalendar` takes it: "UTC", "GMT+01:00", or the text itself where the zone
/// has daylight saving. None where `text` is not such a value.
std::optional<std::string> zoneForPosixText(std::string_view text);

} // namespace vesk
