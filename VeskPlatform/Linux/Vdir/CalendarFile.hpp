#pragma once

#include "VeskPlatform/Linux/Vdir/EventComponent.hpp"
#include "VeskPlatform/Linux/Vdir/IcsScanner.hpp"
#include "VeskPlatform/Linux/Vdir/Occurrences.hpp"

#include <optional>
#include <string>

namespace vesk::vdir {

/// An `.ics` file in memory with its components found.
struct CalendarFile {
    std::string bytes;
    ScannedFile scanned;
};

/// Larger files are no calendars that anybody keeps.
constexpr std::size_t maximumFileSize = std::size_t{256} << 20;

/// Reads and scans a file; none where it vanished, cannot be read or is no regular file, told by `errnoValue`.
std::optional<CalendarFile> readCalendarFile(const std::string& path, int* errnoValue = nullptr);

/// The VEVENTs of one item of the file. Its VTIMEZONEs are left out before parsing: expanding one costs the library
/// about 0.9 ms (measured), a hundred times the event.
std::vector<EventComponent> parseItem(const CalendarFile& file, std::size_t item,
                                      const std::vector<std::string>& userAddresses);

/// Finds zones by name, else by the file's own definitions. Both arguments outlive the result.
ZoneFinder zoneFinder(const CalendarFile& file, Zones& zones);

} // namespace vesk::vdir
