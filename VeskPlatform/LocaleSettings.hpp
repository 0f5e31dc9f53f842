#pragma once

#include <string>

namespace vesk {

/// The user's region settings, read afresh at each call.
class LocaleSettings {
public:
    virtual ~LocaleSettings() = default;
    /// The identifier of the current time zone, as `LocalCalendar` takes it.
    virtual std::string timeZone() = 0;
    /// The current locale as an ICU identifier, such as "de_DE".
    virtual std::string locale() = 0;
};

} // namespace vesk
