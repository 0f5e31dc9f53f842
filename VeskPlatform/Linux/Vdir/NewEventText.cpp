#include "VeskPlatform/Linux/Vdir/NewEventText.hpp"

#include <libical/ical.h>
#include <memory>

namespace vesk::vdir {
namespace {

using namespace std::chrono;

icaltimetype icalTime(WallTime wall) {
    const local_days day = floor<days>(wall);
    const year_month_day date{day};
    const hh_mm_ss time{wall - day};
    icaltimetype result = icaltime_null_time();
    result.year = static_cast<int>(date.year());
    result.month = static_cast<int>(static_cast<unsigned>(date.month()));
    result.day = static_cast<int>(static_cast<unsigned>(date.day()));
    result.hour = static_cast<int>(time.hours().count());
    result.minute = static_cast<int>(time.minutes().count());
    result.second = static_cast<int>(time.seconds().count());
    return result;
}

icaltimetype icalUtc(Instant instant) {
    icaltimetype result = icalTime(WallTime{floor<seconds>(instant).time_since_epoch()});
    result.zone = icaltimezone_get_utc_timezone();
    return result;
}

icaltimetype icalDate(Instant instant, const LocalCalendar& local) {
    icaltimetype result = icalTime(WallTime{floor<days>(local.wallTime(instant))});
    result.is_date = 1;
    return result;
}

bool isUtc(const LocalCalendar& zone) {
    const std::string& name = zone.zoneIdentifier();
    return name == "UTC" || name == "Etc/UTC" || name == "GMT" || name == "Etc/GMT" || name == "Z" || name == "Zulu"
           || name == "Etc/Zulu" || name == "Etc/UCT" || name == "UCT" || name == "Universal"
           || name == "Etc/Universal";
}

/// Adds DTSTART or DTEND; true where the zone's definition is needed.
bool addTime(icalcomponent* event, icalproperty_kind kind, Instant instant, const LocalCalendar& local) {
    icalproperty* property = icalproperty_new(kind);
    const WallTime wall = local.wallTime(instant);
    const bool inUtc = isUtc(local) || local.meaning(wall).kind == WallTimeKind::repeated;
    icalproperty_set_value(property, icalvalue_new_datetime(inUtc ? icalUtc(instant) : icalTime(wall)));
    if (!inUtc) icalproperty_add_parameter(property, icalparameter_new_tzid(local.zoneIdentifier().c_str()));
    icalcomponent_add_property(event, property);
    return !inUtc;
}

void addDay(icalcomponent* event, icalproperty_kind kind, Instant instant, const LocalCalendar& local) {
    icalproperty* property = icalproperty_new(kind);
    icalproperty_set_value(property, icalvalue_new_date(icalDate(instant, local)));
    icalproperty_add_parameter(property, icalparameter_new_value(ICAL_VALUE_DATE));
    icalcomponent_add_property(event, property);
}

struct ComponentDeleter {
    void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};

} // namespace

std::string newEventText(const NewEvent& event, const std::string& uid, Instant now, const LocalCalendar& local) {
    const std::unique_ptr<icalcomponent, ComponentDeleter> calendar(
        icalcomponent_vanew(ICAL_VCALENDAR_COMPONENT, icalproperty_new_version("2.0"),
                            icalproperty_new_prodid("-//Vesk//VeskShellCore//EN"), nullptr));
    icalcomponent* made = icalcomponent_vanew(
        ICAL_VEVENT_COMPONENT, icalproperty_new_uid(uid.c_str()), icalproperty_new_dtstamp(icalUtc(now)),
        icalproperty_new_created(icalUtc(now)), icalproperty_new_lastmodified(icalUtc(now)), nullptr);
    bool needsZone = false;
    if (event.allDay) {
        addDay(made, ICAL_DTSTART_PROPERTY, event.start, local);
        addDay(made, ICAL_DTEND_PROPERTY, event.end, local);
    } else {
        const bool startNeedsZone = addTime(made, ICAL_DTSTART_PROPERTY, event.start, local);
        needsZone = addTime(made, ICAL_DTEND_PROPERTY, event.end, local) || startNeedsZone;
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
