#include "VeskPlatform/Linux/Vdir/CalendarFile.hpp"

#include "VeskPlatform/Linux/Vdir/Folder.hpp"
#include "VeskSupport/ErrorRecord.hpp"

namespace vesk::vdir {

std::optional<CalendarFile> readCalendarFile(const std::string& path, int* errnoValue) {
    try {
        CalendarFile file{readRegularFile(path, maximumFileSize), {}};
        file.scanned = scanCalendarText(file.bytes);
        return file;
    } catch (const PosixError& error) {
        if (errnoValue != nullptr) *errnoValue = static_cast<int>(error.code());
        return std::nullopt;
    }
}

std::vector<EventComponent> parseItem(const CalendarFile& file, std::size_t item,
                                      const std::vector<std::string>& userAddresses) {
    std::vector<EventComponent> components;
    for (const std::size_t place : file.scanned.items[item].events) {
        const std::string_view text = file.scanned.events[place].range.of(file.bytes);
        if (auto event = parseEvent(text, userAddresses)) components.push_back(std::move(*event));
    }
    return components;
}

ZoneFinder zoneFinder(const CalendarFile& file, Zones& zones) {
    return [&file, &zones](const EventTime& time) -> Zone {
        if (time.anchor == EventTime::Anchor::utc) return zones.utc();
        if (time.anchor != EventTime::Anchor::zoned) return zones.local();
        for (const ScannedZone& zone : file.scanned.zones)
            if (zone.tzid == time.tzid) return zones.find(time.tzid, zone.range.of(file.bytes));
        return zones.find(time.tzid, {});
    };
}

} // namespace vesk::vdir
