// Calendar files: found, parsed, asked for a day and for their first occurrences. What is listed lies in the window.

#include "VeskPlatform/Linux/Vdir/CalendarFile.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <libical/ical.h>
#include <string>

namespace {

using namespace vesk;
using namespace vesk::vdir;

void readItem(const CalendarFile& file, std::size_t item, Zones& zones) {
    using namespace std::chrono;
    const Instant from{sys_days{year{2024} / 3 / 31}}, to = from + days(1);
    const auto components = parseItem(file, item, {"user@example.org"});
    const ZoneFinder zoneOf = zoneFinder(file, zones);
    for (const Occurrence& occurrence : occurrencesOf(components, from, to, zoneOf).occurrences)
        if (occurrence.start >= to || occurrence.end < from || occurrence.end < occurrence.start) std::abort();
    if (const auto first = firstOccurrence(components, zoneOf); first && first->end < first->start) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    icalerror_set_errors_are_fatal(0);
    CalendarFile file{std::string(reinterpret_cast<const char*>(data), size), {}};
    file.scanned = scanCalendarText(file.bytes);
    Zones zones(std::make_shared<LocalCalendar>("Europe/Berlin"), [](const std::string&) {});
    for (std::size_t item = 0; item < file.scanned.items.size(); ++item) readItem(file, item, zones);
    return 0;
}
