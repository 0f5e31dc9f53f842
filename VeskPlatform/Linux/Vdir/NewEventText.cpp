#include "VeskPlatform/Linux/Vdir/NewEventText.hpp"

#include <array>
#include <cstdio>
#include <libical/ical.h>
#include <memory>

namespace vesk::vdir {
namespace {

using namespace std::chrono;

/// A DATE-TIME of RFC 5545, section 3.3.5. Not by the library, which writes zeros for years behind 3000.
std::string dateTimeText(WallTime wall) {
    const local_days day = floor<days>(wall);
    const year_month_day date{day};
    const hh_mm_ss time{wall - day};
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d%02u%02uT%02d%02d%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text.data();
}

std::string utcText(Instant instant) {
    return dateTimeText(WallTime{floor<seconds>(instant).time_since_epoch()}) + "Z";
}

std::string dateText(Instant instant, const LocalCalendar& local) {
    return dateTimeText(local.wallTime(instant)).substr(0, 8);
}

/// Adds a property whose value stands as it is given.
icalproperty* add(icalcomponent* event, const char* name, const std::string& value) {
    icalproperty* property = icalproperty_new_x(value.c_str());
    icalproperty_set_x_name(property, name);
    icalcomponent_add_property(event, property);
    return property;
}

bool isUtc(const LocalCalendar& zone) {
    const std::string& name = zone.zoneIdentifier();
    return name == "UTC" || name == "Etc/UTC" || name == "GMT" || name == "Etc/GMT" || name == "Z" || name == "Zulu"
           || name == "Etc/Zulu" || name == "Etc/UCT" || name == "UCT" || name == "Universal"
           || name == "Etc/Universal";
}

/// Adds DTSTART or DTEND; true where the zone's definition is needed.
bool addTime(icalcomponent* event, const char* name, Instant instant, const LocalCalendar& local) {
    const WallTime wall = local.wallTime(instant);
    const bool inUtc = isUtc(local) || local.meaning(wall).kind == WallTimeKind::repeated;
    icalproperty* property = add(event, name, inUtc ? utcText(instant) : dateTimeText(wall));
    if (!inUtc) icalproperty_add_parameter(property, icalparameter_new_tzid(local.zoneIdentifier().c_str()));
    return !inUtc;
}

void addDay(icalcomponent* event, const char* name, Instant instant, const LocalCalendar& local) {
    icalproperty_add_parameter(add(event, name, dateText(instant, local)), icalparameter_new_value(ICAL_VALUE_DATE));
}

struct ComponentDeleter {
    void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};

} // namespace

std::string newEventText(const NewEvent& event, const std::string& uid, Instant now, const LocalCalendar& local) {
    const std::unique_ptr<icalcomponent, ComponentDeleter> calendar(
        icalcomponent_vanew(ICAL_VCALENDAR_COMPONENT, icalproperty_new_version("2.0"),
                            icalproperty_new_prodid("-//Vesk//VeskShellCore//EN"), nullptr));
    icalcomponent* made = icalcomponent_vanew(ICAL_VEVENT_COMPONENT, icalproperty_new_uid(uid.c_str()), nullptr);
    for (const char* name : {"DTSTAMP", "CREATED", "LAST-MODIFIED"}) add(made, name, utcText(now));
    bool needsZone = false;
    if (event.allDay) {
        addDay(made, "DTSTART", event.start, local);
        addDay(made, "DTEND", event.end, local);
    } else {
        const bool startNeedsZone = addTime(made, "DTSTART", event.start, local);
        needsZone = addTime(made, "DTEND", event.end, local) || startNeedsZone;
    }
    icalcomponent_add_property(made, icalproperty_new_summary(event.title.c_str()));
    if (event.location) icalcomponent_add_property(made, icalproperty_new_location(event.location->c_str()));
    if (event.notes) icalcomponent_add_property(made, icalproperty_new_description(event.notes->c_str()));
    if (needsZone)
        if (icalcomponent* zone = icalparser_parse_string(local.vTimeZoneText(event.start).c_str()))
            icalcomponent_add_component(calendar.get(), zone);
    icalcomponent_add_component(calendar.get(), made);
    char* text = icalcomponent_as_ical_string_r(calendar.get());
    std::string result = text;
    icalmemory_free_buffer(text);
    return result;
}

} // namespace vesk::vdir
