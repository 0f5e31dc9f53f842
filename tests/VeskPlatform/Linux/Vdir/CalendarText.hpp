#pragma once

#include "VeskPlatform/Linux/Vdir/CalendarFile.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace vesk::test {

/// A calendar file in memory with everything that reading it needs, in a local zone of choice.
class CalendarText {
public:
    explicit CalendarText(std::string text, const std::string& localZone = "UTC");
    CalendarText(const CalendarText&) = delete;
    CalendarText& operator=(const CalendarText&) = delete;

    const vdir::ScannedFile& scanned() const { return file_.scanned; }
    const std::vector<std::string>& logged() const { return logged_; }
    vdir::Zones& zones() { return zones_; }

    std::vector<vdir::EventComponent> components(std::size_t item = 0) const;
    /// The occurrences of every item that overlap the window, as "START/END" on the wall of `wallZone`, the summary
    /// behind them where there is one. All-day and timed ones are written alike.
    std::vector<std::string> occurrences(std::string_view from, std::string_view to,
                                         const std::string& wallZone = "UTC");
    /// The first occurrence of the first item, written alike; "none" where there is none.
    std::string first(const std::string& wallZone = "UTC");

    std::vector<std::string> userAddresses;

private:
    std::vector<std::string> logged_;
    vdir::CalendarFile file_;
    vdir::Zones zones_;
};

/// Lines put between BEGIN:VCALENDAR and END:VCALENDAR, with CRLF at each LF.
std::string calendar(std::string_view components);
/// Lines put between BEGIN:VEVENT and END:VEVENT, the same way.
std::string event(std::string_view lines);
/// A calendar of one event.
std::string calendarOfEvent(std::string_view lines);

/// 20240131T090000 or 20240131, on a wall.
WallTime wall(std::string_view text);
std::string written(WallTime wall);

} // namespace vesk::test
