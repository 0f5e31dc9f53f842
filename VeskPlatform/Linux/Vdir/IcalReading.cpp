#include "VeskPlatform/Linux/Vdir/IcalReading.hpp"

#include "VeskSupport/Text.hpp"

#include <algorithm>

namespace vesk::vdir {

using namespace std::chrono;

std::optional<WallTime> wallOf(const icaltimetype& time) {
    const year_month_day date{year{time.year}, month{static_cast<unsigned>(time.month)},
                              day{static_cast<unsigned>(time.day)}};
    const bool inRange = time.year >= 1 && time.year <= 9999 && time.month >= 1 && time.day >= 1;
    if (!inRange || !date.ok()) return std::nullopt;
    if (time.is_date != 0) return local_days{date};
    if (time.hour < 0 || time.hour > 23 || time.minute < 0 || time.minute > 59 || time.second < 0 || time.second > 60)
        return std::nullopt;
    // A leap second is the last second of its minute (RFC 5545, section 3.3.12).
    return local_days{date} + hours(time.hour) + minutes(time.minute) + seconds(std::min(time.second, 59));
}

void IcalComponentDeleter::operator()(icalcomponent* component) const { icalcomponent_free(component); }

std::optional<EventTime> eventTime(const icaltimetype& time, icalproperty* property) {
    const auto wall = wallOf(time);
    if (!wall) return std::nullopt;
    EventTime result{*wall, EventTime::Anchor::floating, {}};
    if (time.is_date != 0) {
        result.anchor = EventTime::Anchor::date;
    } else if (icaltime_is_utc(time)) {
        result.anchor = EventTime::Anchor::utc;
    } else if (icalparameter* tzid = icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER)) {
        const char* name = icalparameter_get_tzid(tzid);
        result.anchor = EventTime::Anchor::zoned;
        result.tzid = repairedUtf8(name == nullptr ? "" : name);
    }
    return result;
}

std::optional<EventTime> firstTime(icalcomponent* component, icalproperty_kind kind) {
    icalproperty* property = icalcomponent_get_first_property(component, kind);
    if (property == nullptr) return std::nullopt;
    icalvalue* value = icalproperty_get_value(property);
    return value == nullptr ? std::nullopt : eventTime(icalvalue_get_datetimedate(value), property);
}

std::optional<std::string> firstText(icalcomponent* component, icalproperty_kind kind) {
    icalproperty* property = icalcomponent_get_first_property(component, kind);
    icalvalue* value = property == nullptr ? nullptr : icalproperty_get_value(property);
    if (value == nullptr) return std::nullopt;
    const char* text = icalvalue_isa(value) == ICAL_URI_VALUE ? icalvalue_get_uri(value) : icalvalue_get_text(value);
    return text == nullptr ? std::nullopt : std::optional(repairedUtf8(text));
}

std::string readableText(std::string_view component) {
    constexpr std::size_t longestLine = 1000;
    std::string text;
    text.reserve(component.size() + component.size() / longestLine * 3);
    std::size_t column = 0;
    for (const char c : component) {
        const bool ends = c == '\n' || c == '\r';
        if (column >= longestLine && !ends) {
            text += "\r\n ";
            column = 1;
        }
        column = ends ? 0 : column + 1;
        if (c == '\0')
            text += "\uFFFD";
        else
            text += c;
    }
    return text;
}

} // namespace vesk::vdir
