#pragma once

#include "VeskPlatform/Linux/Vdir/EventComponent.hpp"

#include <libical/ical.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vesk::vdir {

struct IcalComponentDeleter {
    void operator()(icalcomponent* component) const;
};
using IcalComponent = std::unique_ptr<icalcomponent, IcalComponentDeleter>;

/// What the library can read: it takes C strings, and looks for the line end anew every 80 bytes (a line of 10 MB took
/// 38 s, measured), so that long lines are folded.
std::string readableText(std::string_view component);

/// The wall time of a time, none where it is no date that exists in the years 1 to 9999.
std::optional<WallTime> wallOf(const icaltimetype& time);

/// The time as it stands, none where it is no date that exists in the years 1 to 9999.
std::optional<EventTime> eventTime(const icaltimetype& time, icalproperty* property);

/// The value of a component's first property of a kind; none where there is none or it cannot be read. Text is
/// well-formed UTF-8.
std::optional<EventTime> firstTime(icalcomponent* component, icalproperty_kind kind);
std::optional<std::string> firstText(icalcomponent* component, icalproperty_kind kind);

} // namespace vesk::vdir
